#pragma once

#include <algorithm>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

#include "foundation/types.h"

namespace gs {

// A growable array that owns its storage; gs::container<uint8> is the byte
// buffer of every block, packet and blob. An empty container and a failed
// result are the same thing: encoders answer an empty one when they fail.
//
// The first `size` elements live; storage between `size` and `capacity` is raw.
// Nothing here ever doubles: growth goes to exactly the capacity asked for.
// Running out of memory throws std::bad_alloc and changes nothing.
template <class T>
struct container {
  T* data = nullptr;
  uint64 capacity = 0;
  uint64 size = 0;

  container() = default;
  container(const container&) = delete;
  container& operator=(const container&) = delete;
  container(container&& other) noexcept { swap(other); }
  container& operator=(container&& other) noexcept {
    container(std::move(other)).swap(*this);
    return *this;
  }
  ~container() { release(); }

  void swap(container& other) noexcept {
    std::swap(data, other.data);
    std::swap(capacity, other.capacity);
    std::swap(size, other.size);
  }

  // Destroys the elements and frees the storage: back to all zeros.
  void release() noexcept {
    std::destroy_n(data, size);
    ::operator delete(data);
    data = nullptr;
    capacity = size = 0;
  }

  // Makes the capacity at least `wanted`: exactly that when it has to grow.
  void reserve(uint64 wanted) {
    if (wanted <= capacity) return;
    T* grown = allocate(wanted);
    if (size != 0) std::uninitialized_move_n(data, size, grown);
    std::destroy_n(data, size);
    ::operator delete(data);
    data = grown;
    capacity = wanted;
  }

  // Constructs one element at the end.
  // REQUIRES: size < capacity (see reserve), so that callers choose the growth.
  template <class... Args>
  T& emplace(Args&&... args) {
    T* made = ::new (data + size) T(std::forward<Args>(args)...);
    ++size;
    return *made;
  }

  // Replaces the content by a copy of `n` plain elements. Storage that is large
  // enough is used again; n = 0 gives the storage back.
  // REQUIRES: `from` does not point into this container.
  void assign(const T* from, uint64 n) {
    static_assert(std::is_trivially_copyable_v<T>);
    if (n == 0 || n > capacity) release();
    reserve(n);
    std::copy_n(from, n, data);
    size = n;
  }

  bool empty() const { return size == 0; }
  T& operator[](uint64 i) { return data[i]; }
  const T& operator[](uint64 i) const { return data[i]; }
  T* begin() { return data; }
  T* end() { return data + size; }
  const T* begin() const { return data; }
  const T* end() const { return data + size; }

 private:
  static T* allocate(uint64 n) {
    if (n > SIZE_MAX / sizeof(T)) throw std::bad_alloc();
    return static_cast<T*>(::operator new(n * sizeof(T)));
  }
};

// A writable byte range that belongs to somebody else.
struct Buf {
  uint8* data = nullptr;
  uint64 size = 0;
};

// A read-only byte range that belongs to somebody else, who has to outlive the
// view. Containers convert to it, so readers take whole buffers and parts of
// buffers alike without copying.
struct ConstBuf {
  const uint8* data = nullptr;
  uint64 size = 0;

  constexpr ConstBuf() = default;
  constexpr ConstBuf(const uint8* bytes, uint64 n) : data(bytes), size(n) {}
  // NOLINTNEXTLINE(google-explicit-constructor): meant to convert
  ConstBuf(const container<uint8>& whole)
      : data(whole.data), size(whole.size) {}

  // The bytes from `offset` on. REQUIRES: offset <= size.
  constexpr ConstBuf from(uint64 offset) const {
    return {data + offset, size - offset};
  }
};

}  // namespace gs
