#pragma once

#include "foundation/container.h"
#include "foundation/safe_string.h"

// Free helpers for zero-terminated text. Case and white space are those of
// ASCII. A null text is never equal to, a prefix of or greater than anything.

// One hex digit of either case; any other character counts as 0.
uint8 hexToHalfByte(char digit);
// Two hex digits, the more significant first. REQUIRES: two characters.
uint8 hexToByte(const char* digits);
// REQUIRES: value < 16. Upper case.
char halfByteToHex(uint8 value);

// Zeroes the n bytes at `out`, then decodes pairs of hex digits until `out` is
// full or the text ends. False for a null argument or at the first character
// that is no hex digit (an odd one at the end too); the pairs before it stay. A
// null text leaves `out` as it is.
bool convertHexStringToArray(const char* text, uint8* out, size_t n);
bool convertHexStringToArray(const char* text, gs::Buf out);

// SafeString::appendHex; `reverse` takes the last byte first.
SafeString& appendHex(SafeString& to, const uint8* bytes, size_t n,
                      bool reverse);

// A decimal number with an optional fraction, as an integer scaled by
// 10^decimals: "-1.5" with 2 decimals is -150. Fraction digits beyond those are
// left alone unless `end` is given: then the first of them rounds half away
// from zero, the others are skipped, and `end` points behind the number.
// Leading white space is skipped, an empty text is 0, and what does not fit an
// int becomes its nearest limit.
int StrToFixed(const char* text, size_t decimals, char** end);
// value / 10^decimals with exactly that many fraction digits; without a point
// for 0 decimals. All or nothing.
SafeString& appendFixed(SafeString& to, int value, unsigned decimals);

bool isPrefixUncased(const char* text, const char* prefix);
// Whether any of the candidates is a prefix.
template <class... Candidates>
bool isPrefixUncased(const char* text, const char* first, const char* second,
                     Candidates... others) {
  return isPrefixUncased(text, first) ||
         isPrefixUncased(text, second, others...);
}
bool isEqualUncased(const char* a, const char* b);
bool isEqualUncased(const char* a, const char* b, size_t n);
bool isGreater(const char* a, const char* b);
bool endsWith(const char* text, const char* suffix);
char toUpper(char c);
char toLower(char c);
bool isSpace(char c);

// Skips leading white space, then converts what is left of the first n
// characters as strtol does, provided that it is shorter than 23 characters;
// else the answer is 0 and `end`, which may be null, points to `text`.
long strntol(const char* text, size_t n, char** end, int base);

// Text that begins with a double quote loses the enclosing quotes and the
// backslash of every escaped quote, in place. Other text is left alone.
void removeSpecSymb(char* text);

namespace gs {

// The length of `text`, or n when none of its first n characters is zero.
size_t strnlen(const char* text, size_t n);
// The first `needle` that lies within the first n characters of `haystack`, or
// null. In this namespace because some C libraries declare one of their own.
const char* strnstr(const char* haystack, const char* needle, size_t n);

}  // namespace gs
