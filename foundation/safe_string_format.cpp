#include <cstdio>

#include "foundation/safe_string.h"
#include "foundation/text.h"

namespace {

constexpr uint8 DEFAULT_DECIMALS = 6;

// What printf makes of the arguments; without a buffer when memory is out.
SafeString formatted(const char* format, va_list args) {
  va_list again;
  va_copy(again, args);
  const int length = std::vsnprintf(nullptr, 0, format, args);
  SafeString text(length < 0 ? 0 : static_cast<size_t>(length) + 1, false);
  if (text.raw() != nullptr) {
    std::vsnprintf(text.raw(), text.size(), format, again);
    text.validate(true);
  }
  va_end(again);
  return text;
}

}  // namespace

SafeString& SafeString::appendNumber(uint64 value) {
  char digits[20];  // 2^64 - 1 has as many
  char* first = digits + sizeof digits;
  do {
    *--first = static_cast<char>('0' + value % 10);
    value /= 10;
  } while (value != 0);
  return append(first, static_cast<size_t>(digits + sizeof digits - first));
}

SafeString& SafeString::appendNumber(int64 value) {
  if (value >= 0) return appendNumber(static_cast<uint64>(value));
  // Put together aside: all or nothing. Negated without a sign, because the
  // lowest value has no positive counterpart.
  char digits[24];
  SafeString text(digits, sizeof digits);
  text.clear().append('-').appendNumber(0 - static_cast<uint64>(value));
  return append(text);
}

SafeString& SafeString::appendFloat(double value, uint8 decimals) {
  return aformat("%.*f", int{decimals}, value);
}

SafeString& SafeString::operator=(float value) {
  return format("%.*f", int{DEFAULT_DECIMALS}, double{value});
}

SafeString& SafeString::operator<<(float value) {
  return appendFloat(double{value}, DEFAULT_DECIMALS);
}

SafeString& SafeString::appendQuoted(const char* text) {
  return aformat("\"%s\"", text == nullptr ? "" : text);
}

SafeString& SafeString::appendHex(const uint8* bytes, size_t n,
                                  Endianness order) {
  if (bytes == nullptr || n == 0 || n > SIZE_MAX / 4) return done(false);
  const char* from = reinterpret_cast<const char*>(bytes);
  if (!makeRoomBeside(length() + 2 * n, from)) return done(false);
  // The digits go behind the text, so bytes of the text itself stay readable.
  for (size_t i = 0; i < n; ++i) {
    const char at = from[order == Endianness::BIG ? i : n - 1 - i];
    const uint8 byte = static_cast<uint8>(at);
    *end++ = halfByteToHex(static_cast<uint8>(byte >> 4));
    *end++ = halfByteToHex(byte & 0x0F);
  }
  setLength(length());
  return done(true);
}

SafeString& SafeString::appendBin(uint8 byte) {
  char digits[8];
  for (int i = 0; i < 8; ++i) {
    digits[i] = static_cast<char>('0' + (byte >> (7 - i) & 1));
  }
  return append(digits, sizeof digits);
}

SafeString& SafeString::format(const char* format, ...) {
  va_list args;
  va_start(args, format);
  vformat(format, args);
  va_end(args);
  return *this;
}

SafeString& SafeString::aformat(const char* format, ...) {
  va_list args;
  va_start(args, format);
  vaformat(format, args);
  va_end(args);
  return *this;
}

// The text is made aside: the arguments may lie inside this string.
SafeString& SafeString::vformat(const char* format, va_list args) {
  const SafeString text = formatted(format, args);
  return text.size() == 0 ? done(false) : setBytes(text.begin, text.length());
}

SafeString& SafeString::vaformat(const char* format, va_list args) {
  const SafeString text = formatted(format, args);
  return text.size() == 0 ? done(false) : append(text);
}
