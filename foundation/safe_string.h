#pragma once

#include <compare>
#include <concepts>
#include <cstdarg>
#include <cstdlib>
#include <utility>

#include "foundation/container.h"
#include "foundation/diagnostics.h"
#include "foundation/types.h"

// Which end of a run of bytes is written first: as stored, or last byte first.
enum class Endianness : uint8 { BIG = 0, LITTLE = 1 };

// The string of the whole core: zero-terminated bytes in a buffer that is fixed
// or may grow. It never writes past its buffer and never throws: each operation
// leaves a valid, terminated string and records in wasLastOpSuccessful()
// whether it did all it was asked to. Out of memory counts as lack of room.
//
// Owned buffers grow to the need rounded up to a multiple of 32 bytes. A
// borrowed buffer belongs to the caller, who has to outlive the string; it is
// never resized or freed. A string may have no buffer at all (capacity 0).
//
// Text arguments are zero-terminated and may lie inside the string itself. Null
// adds nothing and equals nothing; formats must not be null.
class SafeString {
 public:
  SafeString() = default;
  // Empty, with `capacity` bytes, the terminator's included. A capacity of 0
  // allocates nothing and makes the string growable whatever `growable` says.
  SafeString(size_t capacity, bool growable);
  // Borrows `buffer` of `size` bytes, with what it holds up to its first zero
  // byte; without one the last byte becomes the terminator.
  SafeString(char* buffer, size_t size);
  SafeString(unsigned char* buffer, size_t size);
  // Owned copies of a text, growable unless said otherwise. A fixed capacity
  // that is too small for the text leaves the string empty.
  SafeString(const char* text);  // NOLINT(google-explicit-constructor)
  SafeString(size_t capacity, const char* text, bool growable);
  SafeString(size_t capacity, const SafeString& text, bool growable);
  // Copies the whole capacity, zero bytes included, into an owned buffer. A
  // copy of a string that failed to get a buffer has failed too.
  SafeString(const SafeString& other);
  SafeString(SafeString&& other) noexcept { swap(other); }
  ~SafeString() {
    if (!borrowed) std::free(begin);
  }

  // A string to be read only, over `length` characters and a zero byte that
  // belong to the caller. Copies of it are owned and may grow.
  static SafeString view(const char* text, size_t length);

  // An owned copy of the bytes, growable, of the least capacity.
  // REQUIRES: size < SIZE_MAX.
  static SafeString copyOf(const gs::ConstBuf& bytes);

  // Takes over the other's buffer, whether it may grow, and its last outcome.
  // A buffer that was borrowed is no longer written to.
  SafeString& operator=(SafeString&& other) noexcept;
  // Replace the content; the room rules of set() hold.
  SafeString& operator=(const SafeString& other);
  SafeString& operator=(const char* text);
  SafeString& operator=(bool value);  // "true" or "false"
  SafeString& operator=(char c);
  SafeString& operator=(float value);  // with 6 decimals

  // The capacity, the terminator's byte included.
  size_t size() const {
    return begin == nullptr ? 0 : static_cast<size_t>(last - begin) + 1;
  }
  size_t length() const { return static_cast<size_t>(end - begin); }
  bool isEmpty() const { return end == begin; }
  bool wasLastOpSuccessful() const { return lastOpOk; }

  // The text from `offset` on; null without a buffer or past size().
  const char* data(size_t offset) const;
  const char* data() const { return begin; }
  // The writable buffer or null. Call validate(true) after writing to it.
  char* raw() { return begin; }
  // The text; empty, never null, without a buffer.
  operator const char*() const {  // NOLINT(google-explicit-constructor)
    return begin == nullptr ? "" : begin;
  }
  const char* c_str() const { return *this; }  // the same, for varargs
  // length() bytes, zero bytes included.
  gs::ConstBuf bytes() const {
    return {reinterpret_cast<const uint8*>(begin), length()};
  }

  // All or nothing. The source ends at its first zero byte or after n bytes.
  SafeString& append(const char* text);
  SafeString& append(const char* text, size_t n);
  SafeString& append(const SafeString& text);
  SafeString& append(char c);
  // Exactly n bytes, all or nothing; the string then ends at its first zero.
  SafeString& appendArray(const char* bytes, size_t n);
  SafeString& appendArray(const gs::ConstBuf& bytes);
  // Always writes: in a full string `c` replaces the last character.
  SafeString& forceAppend(char c);
  SafeString& appendQuoted(const char* text);  // "text"
  // A string that cannot grow keeps what fits: first of `text`, then of the old
  // content; anything dropped counts as failure.
  SafeString& prepend(const char* text);

  SafeString& operator<<(const char* text) { return append(text); }
  SafeString& operator<<(const SafeString& text) { return append(text); }
  SafeString& operator<<(char c) { return append(c); }
  SafeString& operator<<(float value);  // with 6 decimals

  // Decimal.
  SafeString& appendNumber(uint64 value);
  SafeString& appendNumber(int64 value);
  template <std::integral T>
  SafeString& appendNumber(T value) {
    if constexpr (std::signed_integral<T>) return appendNumber(int64{value});
    return appendNumber(static_cast<uint64>(value));
  }
  // Fixed point, rounded as printf does; "inf" and "nan" for what has no
  // digits.
  SafeString& appendFloat(double value, uint8 decimals);
  // Two upper-case digits a byte; fails for null or no bytes.
  SafeString& appendHex(const uint8* bytes, size_t n, Endianness order);
  SafeString& appendBin(uint8 byte);  // eight digits

  // printf-style, replacing the content or appending to it; all or nothing.
  SafeString& format(const char* format, ...) BRINDLE_PRINTF(2, 3);
  SafeString& vformat(const char* format, va_list args);
  SafeString& aformat(const char* format, ...) BRINDLE_PRINTF(2, 3);
  SafeString& vaformat(const char* format, va_list args);

  // Replaces the content by at most n characters of `text`, all or nothing.
  SafeString& set(const char* text, size_t n);
  // Replaces the content by exactly n bytes, zero bytes included, which then
  // count in length(); comparisons still stop at the first. All or nothing.
  SafeString& setBytes(const void* bytes, size_t n);

  // Replaces every `from` that starts at `start` or later, all or nothing, in
  // the text up to its first zero byte. An empty `from` does nothing.
  SafeString& replace(const char* from, const char* to, size_t start = 0);
  SafeString& replace(char from, char to);
  SafeString& replace(const char* set, char to);  // every character of `set`

  SafeString& trimLeft(size_t n);     // drops n characters, or all there are
  SafeString& trimRight(size_t n);    // likewise at the end
  SafeString& cut(size_t newLength);  // nothing if longer than the string
  SafeString& trimLeft();             // drops white space
  SafeString& trimRight();
  SafeString& trim();

  SafeString& fill(char c);  // the whole capacity
  SafeString& clear();
  // Sets the capacity; a smaller one cuts the content, 0 frees the buffer.
  // Fails for a borrowed buffer. New bytes are zero.
  SafeString& resize(size_t capacity);
  SafeString& setCanGrow(bool on);  // refused for a borrowed buffer
  // Finds the end again after writes to raw(): the first zero byte, forced into
  // the last byte when there is none. Unless `force`, an end that still is a
  // zero byte stays.
  SafeString& validate(bool force);

  // ASCII letters only.
  SafeString& toUpper();
  SafeString& toLower();
  SafeString& toUpper(size_t start, size_t n);
  SafeString& toLower(size_t start, size_t n);
  SafeString& firstWordToUpper();  // up to the first white space after it

  // Compared byte for byte up to the first zero byte. A string without a buffer
  // equals nothing and is neither less nor greater than anything.
  bool isEqual(const char* text) const;
  bool operator==(const char* text) const { return isEqual(text); }
  bool operator==(const SafeString& other) const {
    return isEqual(other.begin);
  }
  std::partial_ordering operator<=>(const char* text) const;
  std::partial_ordering operator<=>(const SafeString& other) const {
    return *this <=> static_cast<const char*>(other.begin);
  }
  bool startsWith(const char* prefix) const;
  bool endsWith(const char* suffix) const;

 private:
  SafeString& done(bool ok);  // records the outcome
  void swap(SafeString& other) noexcept {
    std::swap(begin, other.begin);
    std::swap(last, other.last);
    std::swap(end, other.end);
    std::swap(borrowed, other.borrowed);
    std::swap(canGrow, other.canGrow);
    std::swap(lastOpOk, other.lastOpOk);
  }
  bool appendBytes(const char* bytes, size_t n);
  // makeRoom, after which `bytes` points to the same bytes even if they lie
  // inside the buffer and this has moved.
  bool makeRoomBeside(size_t newLength, const char*& bytes);
  bool makeRoom(size_t newLength);  // for that many characters
  // For owned buffers; keeps what fits. REQUIRES: capacity != 0.
  bool reallocate(size_t capacity);
  void release();                      // owned buffers
  void setLength(size_t newLength);    // and terminates
  bool holds(const char* text) const;  // text lies inside the buffer
  template <class Map>
  SafeString& mapRange(size_t start, size_t n, Map map);

  char* begin = nullptr;
  char* last = nullptr;
  char* end = nullptr;
  bool borrowed = false;
  bool canGrow = true;
  bool lastOpOk = true;
};

// A copy of `text`, or std::bad_alloc: for names that must not get lost.
SafeString cloneOf(const SafeString& text);
// The same of bytes, zero bytes included. REQUIRES: size < SIZE_MAX.
SafeString cloneOf(const gs::ConstBuf& bytes);
