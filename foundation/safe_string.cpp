#include "foundation/safe_string.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <new>

#include "foundation/text.h"

namespace {

constexpr size_t GROWTH_STEP = 32;

size_t textLength(const char* text) {
  return text == nullptr ? 0 : std::strlen(text);
}

}  // namespace

SafeString::SafeString(size_t capacity, bool growable) : canGrow(growable) {
  if (capacity == 0) {
    canGrow = true;
    return;
  }
  lastOpOk = reallocate(capacity);
}

SafeString::SafeString(char* buffer, size_t size) : canGrow(false) {
  if (buffer == nullptr || size == 0) return;
  borrowed = true;
  begin = end = buffer;
  last = buffer + size - 1;
  validate(true);
}

SafeString::SafeString(unsigned char* buffer, size_t size)
    : SafeString(reinterpret_cast<char*>(buffer), size) {}

SafeString::SafeString(const char* text) : SafeString(0, text, true) {}

SafeString::SafeString(size_t capacity, const char* text, bool growable)
    : SafeString(capacity, growable) {
  if (text != nullptr && lastOpOk) set(text, SIZE_MAX);
}

SafeString::SafeString(size_t capacity, const SafeString& text, bool growable)
    : SafeString(capacity, growable) {
  if (lastOpOk) *this = text;
}

SafeString::SafeString(const SafeString& other) : canGrow(other.canGrow) {
  lastOpOk = other.begin == nullptr ? other.lastOpOk : reallocate(other.size());
  if (begin == nullptr) return;
  std::memcpy(begin, other.begin, other.size());
  end = begin + other.length();
}

SafeString SafeString::view(const char* text, size_t length) {
  SafeString made;
  made.begin = const_cast<char*>(text);
  made.last = made.end = made.begin + length;
  made.borrowed = true;
  return made;
}

SafeString SafeString::copyOf(const gs::ConstBuf& bytes) {
  SafeString made;
  made.begin = static_cast<char*>(std::malloc(bytes.size + 1));
  if (made.begin == nullptr) return std::move(made.done(false));
  if (bytes.size != 0) std::memcpy(made.begin, bytes.data, bytes.size);
  made.last = made.begin + bytes.size;
  made.setLength(bytes.size);
  return made;
}

SafeString& SafeString::operator=(const SafeString& other) {
  if (this == &other) return done(true);
  return setBytes(other.begin, other.length());
}

SafeString& SafeString::operator=(SafeString&& other) noexcept {
  SafeString taken(std::move(other));
  swap(taken);
  return *this;
}

SafeString& SafeString::operator=(const char* text) {
  return set(text, SIZE_MAX);
}

SafeString& SafeString::operator=(bool value) {
  return *this = value ? "true" : "false";
}

SafeString& SafeString::operator=(char c) { return set(&c, 1); }

const char* SafeString::data(size_t offset) const {
  return begin == nullptr || offset > size() ? nullptr : begin + offset;
}

SafeString& SafeString::append(const char* text) {
  return append(text, SIZE_MAX);
}

SafeString& SafeString::append(const char* text, size_t n) {
  return done(appendBytes(text, text == nullptr ? 0 : gs::strnlen(text, n)));
}

SafeString& SafeString::append(const SafeString& text) {
  return append(text.begin);
}

SafeString& SafeString::append(char c) { return done(appendBytes(&c, 1)); }

SafeString& SafeString::appendArray(const char* bytes, size_t n) {
  if (!appendBytes(bytes, n)) return done(false);
  return validate(true);
}

SafeString& SafeString::appendArray(const gs::ConstBuf& bytes) {
  return appendArray(reinterpret_cast<const char*>(bytes.data), bytes.size);
}

SafeString& SafeString::forceAppend(char c) {
  if (append(c).lastOpOk) return *this;
  if (isEmpty()) return *this;  // no room for even one character
  end[-1] = c;
  return validate(true);
}

SafeString& SafeString::prepend(const char* text) {
  if (holds(text)) {
    const SafeString copy(text);
    return copy.lastOpOk ? prepend(copy) : done(false);
  }
  const size_t added = textLength(text);
  const size_t whole = length() + added;
  const bool fits = makeRoom(whole);
  if (begin == nullptr) return done(added == 0);
  const size_t room = size() - 1;
  const size_t front = std::min(added, room);
  const size_t back = std::min(length(), room - front);
  std::memmove(begin + front, begin, back);
  if (front != 0) std::memcpy(begin, text, front);
  setLength(front + back);
  return done(fits);
}

SafeString& SafeString::set(const char* text, size_t n) {
  return setBytes(text, text == nullptr ? 0 : gs::strnlen(text, n));
}

SafeString& SafeString::setBytes(const void* bytes, size_t n) {
  const char* from = static_cast<const char*>(bytes);
  if (n != 0 && from == nullptr) return done(false);
  // Bytes inside the buffer fit already, so the buffer does not move.
  if (!makeRoom(n)) return done(false);
  if (n != 0) std::memmove(begin, from, n);
  setLength(n);
  return done(true);
}

SafeString& SafeString::clear() {
  if (begin != nullptr) setLength(0);
  return done(true);
}

SafeString& SafeString::resize(size_t capacity) {
  if (borrowed) return done(false);
  if (capacity == size()) return done(true);
  if (capacity != 0) return done(reallocate(capacity));
  release();
  return done(true);
}

SafeString& SafeString::setCanGrow(bool on) {
  if (borrowed && on) return done(false);
  canGrow = on;
  return done(true);
}

SafeString& SafeString::validate(bool force) {
  if (begin == nullptr || (!force && *end == '\0')) return done(true);
  setLength(gs::strnlen(begin, size() - 1));
  return done(true);
}

SafeString& SafeString::done(bool ok) {
  lastOpOk = ok;
  return *this;
}

bool SafeString::appendBytes(const char* bytes, size_t n) {
  if (n == 0) return true;
  if (bytes == nullptr || n > SIZE_MAX - length()) return false;
  const size_t newLength = length() + n;
  if (!makeRoomBeside(newLength, bytes)) return false;
  std::memmove(end, bytes, n);
  setLength(newLength);
  return true;
}

bool SafeString::makeRoom(size_t newLength) {
  if (begin != nullptr && newLength < size()) return true;
  if (!canGrow || borrowed || newLength > SIZE_MAX - GROWTH_STEP) return false;
  const size_t need = newLength + 1;
  return reallocate((need + GROWTH_STEP - 1) / GROWTH_STEP * GROWTH_STEP);
}

bool SafeString::makeRoomBeside(size_t newLength, const char*& bytes) {
  const bool inside = holds(bytes);
  const size_t offset = inside ? static_cast<size_t>(bytes - begin) : 0;
  if (!makeRoom(newLength)) return false;
  if (inside) bytes = begin + offset;
  return true;
}

void SafeString::release() {
  std::free(begin);
  begin = last = end = nullptr;
}

bool SafeString::reallocate(size_t capacity) {
  const size_t oldSize = size();
  const size_t kept = std::min(length(), capacity - 1);
  char* moved = static_cast<char*>(std::realloc(begin, capacity));
  if (moved == nullptr) return false;
  if (capacity > oldSize) std::memset(moved + oldSize, 0, capacity - oldSize);
  begin = moved;
  last = moved + capacity - 1;
  setLength(kept);
  return true;
}

void SafeString::setLength(size_t newLength) {
  end = begin + newLength;
  *end = '\0';
}

bool SafeString::holds(const char* text) const {
  // std::less orders any two pointers; < is defined inside one buffer only.
  return begin != nullptr && text != nullptr &&
         !std::less<>()(text, static_cast<const char*>(begin)) &&
         !std::less<>()(static_cast<const char*>(last), text);
}

SafeString cloneOf(const gs::ConstBuf& bytes) {
  SafeString text = SafeString::copyOf(bytes);
  if (!text.wasLastOpSuccessful()) throw std::bad_alloc();
  return text;
}

SafeString cloneOf(const SafeString& text) {
  SafeString copy(text);
  if (!copy.wasLastOpSuccessful()) throw std::bad_alloc();
  return copy;
}
