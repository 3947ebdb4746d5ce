#include "foundation/text.h"

#include <algorithm>
#include <cctype>
#include <climits>
#include <cstdlib>
#include <cstring>

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isHexDigit(char c) {
  return std::isxdigit(static_cast<unsigned char>(c)) != 0;
}

// The next digit of a decimal number of the given sign, kept within an int.
void pushDigit(int64& value, int digit, int sign) {
  value = value * 10 + sign * digit;
  value = std::clamp<int64>(value, INT_MIN, INT_MAX);
}

}  // namespace

uint8 hexToHalfByte(char digit) {
  if (isDigit(digit)) return static_cast<uint8>(digit - '0');
  const char upper = toUpper(digit);
  if (upper < 'A' || upper > 'F') return 0;
  return static_cast<uint8>(upper - 'A' + 10);
}

uint8 hexToByte(const char* digits) {
  return static_cast<uint8>(hexToHalfByte(digits[0]) << 4 |
                            hexToHalfByte(digits[1]));
}

char halfByteToHex(uint8 value) { return "0123456789ABCDEF"[value & 0x0F]; }

bool convertHexStringToArray(const char* text, uint8* out, size_t n) {
  if (out == nullptr || text == nullptr) return false;
  std::fill_n(out, n, uint8{0});
  for (size_t i = 0; i < n && *text != '\0'; ++i, text += 2) {
    if (!isHexDigit(text[0]) || !isHexDigit(text[1])) return false;
    out[i] = hexToByte(text);
  }
  return true;
}

bool convertHexStringToArray(const char* text, gs::Buf out) {
  return convertHexStringToArray(text, out.data, out.size);
}

SafeString& appendHex(SafeString& to, const uint8* bytes, size_t n,
                      bool reverse) {
  return to.appendHex(bytes, n, reverse ? Endianness::LITTLE : Endianness::BIG);
}

int StrToFixed(const char* text, size_t decimals, char** end) {
  if (text == nullptr) text = "";
  while (isSpace(*text)) ++text;
  const int sign = *text == '-' ? -1 : 1;
  if (*text == '-' || *text == '+') ++text;

  int64 value = 0;
  for (; isDigit(*text); ++text) pushDigit(value, *text - '0', sign);
  if (*text == '.') ++text;
  for (; decimals != 0 && isDigit(*text); --decimals, ++text) {
    pushDigit(value, *text - '0', sign);
  }
  // Ten zeros take any number but 0 to its limit.
  for (decimals = std::min<size_t>(decimals, 10); decimals != 0; --decimals) {
    pushDigit(value, 0, sign);
  }

  if (end != nullptr) {
    if (isDigit(*text) && *text >= '5') value += sign;
    while (isDigit(*text)) ++text;
    *end = const_cast<char*>(text);
  }
  return static_cast<int>(std::clamp<int64>(value, INT_MIN, INT_MAX));
}

SafeString& appendFixed(SafeString& to, int value, unsigned decimals) {
  const char* sign = value < 0 ? "-" : "";
  const auto magnitude =
      static_cast<unsigned long long>(value < 0 ? -int64{value} : value);
  if (decimals == 0) return to.aformat("%s%llu", sign, magnitude);
  // 10^10 is more than any int: from there on all digits are fraction digits.
  unsigned long long scale = 1;
  for (unsigned i = std::min(decimals, 10U); i != 0; --i) scale *= 10;
  const auto width = static_cast<int>(std::min<unsigned>(decimals, INT_MAX));
  return to.aformat("%s%llu.%0*llu", sign, magnitude / scale, width,
                    magnitude % scale);
}

bool isPrefixUncased(const char* text, const char* prefix) {
  return prefix != nullptr && isEqualUncased(text, prefix, std::strlen(prefix));
}

bool isEqualUncased(const char* a, const char* b) {
  return isEqualUncased(a, b, SIZE_MAX);
}

bool isEqualUncased(const char* a, const char* b, size_t n) {
  if (a == nullptr || b == nullptr) return false;
  for (; n != 0; --n, ++a, ++b) {
    if (toLower(*a) != toLower(*b)) return false;
    if (*a == '\0') return true;
  }
  return true;
}

bool isGreater(const char* a, const char* b) {
  return a != nullptr && b != nullptr && std::strcmp(a, b) > 0;
}

bool endsWith(const char* text, const char* suffix) {
  if (text == nullptr || suffix == nullptr) return false;
  const size_t length = std::strlen(text);
  const size_t tail = std::strlen(suffix);
  return tail <= length && std::strcmp(text + length - tail, suffix) == 0;
}

bool isSpace(char c) {
  return std::isspace(static_cast<unsigned char>(c)) != 0;
}

char toUpper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

char toLower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

long strntol(const char* text, size_t n, char** end, int base) {
  constexpr size_t LIMIT = 23;
  if (end != nullptr) *end = const_cast<char*>(text);
  if (text == nullptr) return 0;
  const size_t length = gs::strnlen(text, n);
  size_t blanks = 0;
  while (blanks < length && isSpace(text[blanks])) ++blanks;
  if (length - blanks >= LIMIT) return 0;

  char copy[LIMIT] = {};
  std::memcpy(copy, text + blanks, length - blanks);
  char* stop = copy;
  const long value = std::strtol(copy, &stop, base);
  if (end != nullptr && stop != copy) {
    *end += blanks + static_cast<size_t>(stop - copy);
  }
  return value;
}

void removeSpecSymb(char* text) {
  if (text == nullptr || *text != '"') return;
  char* out = text;
  for (const char* in = text + 1; *in != '\0'; ++in) {
    if (in[0] == '\\' && in[1] == '"') {
      ++in;
    } else if (in[0] == '"' && in[1] == '\0') {
      break;
    }
    *out++ = *in;
  }
  *out = '\0';
}

namespace gs {

size_t strnlen(const char* text, size_t n) {
  // Not memchr: it may be told a range that reaches past the end of the text.
  size_t length = 0;
  while (length < n && text[length] != '\0') ++length;
  return length;
}

const char* strnstr(const char* haystack, const char* needle, size_t n) {
  if (haystack == nullptr || needle == nullptr) return nullptr;
  const size_t length = gs::strnlen(haystack, n);
  const size_t wanted = std::strlen(needle);
  for (size_t i = 0; wanted <= length && i <= length - wanted; ++i) {
    if (std::strncmp(haystack + i, needle, wanted) == 0) return haystack + i;
  }
  return nullptr;
}

}  // namespace gs
