#pragma once

#include <algorithm>
#include <cstring>
#include <string>

#include "foundation/types.h"

// An input read as a script: numbers and texts, in the order of their use.
// Behind its end come zeros.
class Script {
 public:
  Script(const uint8* data, size_t size)
      : rest(reinterpret_cast<const char*>(data), size) {}

  bool ended() const { return rest.empty(); }
  size_t byte() {
    if (rest.empty()) return 0;
    const auto first = static_cast<uint8>(rest.front());
    rest.remove_prefix(1);
    return first;
  }
  char character() { return static_cast<char>(byte()); }
  bool flag() { return byte() % 2 != 0; }
  template <class T>
  T number() {
    T out{};
    const std::string bytes = text(sizeof out);
    std::memcpy(&out, bytes.data(), bytes.size());
    return out;
  }
  // A small number, or one that is too large for anything.
  size_t count() {
    const size_t small = byte();
    return small == 255 ? SIZE_MAX : small % 80;
  }
  std::string bytes() { return text(byte() % 48); }

 private:
  std::string text(size_t n) {
    const std::string out(rest.substr(0, n));
    rest.remove_prefix(out.size());
    return out;
  }

  std::string_view rest;
};
