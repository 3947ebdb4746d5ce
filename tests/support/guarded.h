#pragma once

#include <sys/mman.h>

#include "foundation/types.h"

// Memory that ends where the next page may not be read: a single byte too far
// is a crash, whatever the instruction that reads it.
class GuardedBytes {
 public:
  static constexpr size_t SIZE = 1 << 17;  // a multiple of any page size

  GuardedBytes() {
    mprotect(memory, SIZE, PROT_READ | PROT_WRITE);
    for (size_t i = 0; i < SIZE; ++i) memory[i] = static_cast<uint8>(i * i / 7);
  }
  GuardedBytes(const GuardedBytes&) = delete;
  GuardedBytes& operator=(const GuardedBytes&) = delete;
  ~GuardedBytes() { munmap(memory, 2 * SIZE); }

  const uint8* end() const { return memory + SIZE; }

 private:
  uint8* memory = static_cast<uint8*>(
      mmap(nullptr, 2 * SIZE, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
};
