// The free text helpers against plain definitions over std::string.

#include <cctype>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <memory>

#include "foundation/text.h"
#include "fuzz/definitions.h"
#include "fuzz/invariant.h"
#include "fuzz/script.h"
#include "fuzz/string_model.h"

namespace {

std::string lower(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
  }
  return text;
}

bool isHex(char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

size_t hexValue(char c) {
  const size_t place = std::string_view("0123456789abcdef").find(lower({c})[0]);
  return place == std::string_view::npos ? 0 : place;
}

void checkCharacter(char c) {
  const std::string one{c};
  INVARIANT(toLower(c) == lower(one)[0]);
  INVARIANT(toUpper(toLower(c)) ==
            (c >= 'a' && c <= 'z' ? c - 32 : toUpper(c)));
  INVARIANT(lower({toUpper(c)}) == lower(one));
  INVARIANT((toUpper(c) == c) == !(c >= 'a' && c <= 'z'));
  INVARIANT(isSpace(c) == isBlank(c));
  INVARIANT(hexToHalfByte(c) == hexValue(c));
  const auto half = static_cast<uint8>(c & 15);
  INVARIANT(hexToHalfByte(halfByteToHex(half)) == half);
  INVARIANT(!(halfByteToHex(half) >= 'a'));
  const char digits[] = {c, toLower(c)};
  INVARIANT(hexToByte(digits) == 17 * hexValue(c));
}

void checkHexToArray(const std::string& text, size_t n) {
  std::string expected(n, '\0');
  bool ok = true;
  for (size_t i = 0; i < n && 2 * i < text.size() && ok; ++i) {
    const std::string pair = text.substr(2 * i, 2);
    ok = pair.size() == 2 && isHex(pair[0]) && isHex(pair[1]);
    if (ok) {
      expected[i] =
          static_cast<char>(16 * hexValue(pair[0]) + hexValue(pair[1]));
    }
  }
  const auto out = std::make_unique<uint8[]>(n);
  std::fill_n(out.get(), n, uint8{0xAA});
  INVARIANT(!convertHexStringToArray(nullptr, out.get(), n));
  INVARIANT(n == 0 || out[n - 1] == 0xAA);
  INVARIANT(!convertHexStringToArray(text.c_str(), nullptr, n));
  INVARIANT(convertHexStringToArray(text.c_str(), gs::Buf{out.get(), n}) == ok);
  INVARIANT(reference::viewOf({out.get(), n}) == expected);
}

void checkComparisons(const char* a, const char* b, size_t n) {
  const bool both = a != nullptr && b != nullptr;
  const std::string x = a == nullptr ? "" : a;
  const std::string y = b == nullptr ? "" : b;
  const auto head = [n](const std::string& text) {
    return lower(text.substr(0, n));
  };
  INVARIANT(isEqualUncased(a, b) == (both && lower(x) == lower(y)));
  INVARIANT(isEqualUncased(a, b, n) == (both && head(x) == head(y)));
  const bool prefixed = both && lower(x).starts_with(lower(y));
  INVARIANT(isPrefixUncased(a, b) == prefixed);
  INVARIANT(isPrefixUncased(a, "\x01", b) ==
            (prefixed || x.starts_with('\x01')));
  INVARIANT(isGreater(a, b) == (both && x > y));
  INVARIANT(endsWith(a, b) == (both && x.ends_with(y)));
}

void checkSearch(const std::string& text, const std::string& part, size_t n) {
  // The range may reach past the end of the text, but not past its zero byte.
  INVARIANT(gs::strnlen(text.c_str(), n) == std::min(text.size(), n));
  const size_t found = text.substr(0, n).find(part);
  const char* expected =
      found == std::string::npos ? nullptr : text.c_str() + found;
  INVARIANT(gs::strnstr(text.c_str(), part.c_str(), n) == expected);
  INVARIANT(gs::strnstr(nullptr, part.c_str(), n) == nullptr);
  INVARIANT(gs::strnstr(text.c_str(), nullptr, n) == nullptr);
}

// The number that starts at `at`, scaled; `at` moves behind what was used. The
// digits are taken as a text, which is cut where any int is exceeded.
int fixedModel(const std::string& text, size_t decimals, bool rounds,
               size_t& at) {
  while (isBlank(text[at])) ++at;
  const bool negative = text[at] == '-';
  if (negative || text[at] == '+') ++at;
  std::string digits;
  while (isDigit(text[at])) digits += text[at++];
  if (text[at] == '.') ++at;
  size_t missing = decimals;
  for (; missing != 0 && isDigit(text[at]); --missing) digits += text[at++];
  const bool up = rounds && text[at] >= '5' && isDigit(text[at]);
  while (isDigit(text[at])) ++at;

  digits.append(std::min<size_t>(missing, 20), '0');
  digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size()));
  if (digits.size() > 12) digits = "999999999999";
  const long long magnitude =
      std::strtoll(digits.c_str(), nullptr, 10) + (up ? 1 : 0);
  return static_cast<int>(std::clamp<long long>(
      negative ? -magnitude : magnitude, INT_MIN, INT_MAX));
}

void checkFixed(const std::string& text, size_t decimals, int value) {
  size_t used = 0;
  char* end = nullptr;
  INVARIANT(StrToFixed(text.c_str(), decimals, &end) ==
            fixedModel(text, decimals, true, used));
  INVARIANT(end == text.c_str() + used);
  used = 0;
  INVARIANT(StrToFixed(text.c_str(), decimals, nullptr) ==
            fixedModel(text, decimals, false, used));
  INVARIANT(StrToFixed(nullptr, decimals, &end) == 0 && *end == '\0');

  const auto places = static_cast<unsigned>(std::min<size_t>(decimals, 99));
  SafeString written("=");
  appendFixed(written, value, places);
  std::string digits = std::to_string(std::abs(int64{value}));
  if (digits.size() <= places)
    digits.insert(0, places + 1 - digits.size(), '0');
  if (places != 0) digits.insert(digits.size() - places, 1, '.');
  INVARIANT(written == ((value < 0 ? "=-" : "=") + digits).c_str());
  INVARIANT(StrToFixed(written.c_str() + 1, places, nullptr) == value);
}

void checkStrntol(const std::string& text, size_t n, int base) {
  const std::string head = text.substr(0, n);
  size_t blanks = 0;
  while (blanks < head.size() && isBlank(head[blanks])) ++blanks;
  const std::string rest = head.substr(blanks);
  long expected = 0;
  size_t used = 0;
  if (rest.size() < 23) {
    char* stop = nullptr;
    expected = std::strtol(rest.c_str(), &stop, base);
    if (stop != rest.c_str()) {
      used = blanks + static_cast<size_t>(stop - rest.c_str());
    }
  }
  char* end = nullptr;
  INVARIANT(strntol(text.c_str(), n, &end, base) == expected);
  INVARIANT(end == text.c_str() + used);
  INVARIANT(strntol(text.c_str(), n, nullptr, base) == expected);
  INVARIANT(strntol(nullptr, n, &end, base) == 0 && end == nullptr);
}

void checkUnquoting(std::string text) {
  std::string expected = text;
  if (text.starts_with('"')) {
    expected.erase(0, 1);
    const bool escaped = expected.ends_with("\\\"");
    if (expected.ends_with('"') && !escaped) expected.pop_back();
    for (size_t at = 0; (at = expected.find("\\\"", at)) != std::string::npos;
         ++at) {
      expected.erase(at, 1);
    }
  }
  removeSpecSymb(text.data());
  INVARIANT(upToZero(text) == expected);
  removeSpecSymb(nullptr);
}

void checkAppendHex(const std::string& bytes) {
  for (const bool reverse : {false, true}) {
    SafeString one;
    SafeString other;
    appendHex(one, reference::bytesOf(bytes), bytes.size(), reverse);
    other.appendHex(reference::bytesOf(bytes), bytes.size(),
                    reverse ? Endianness::LITTLE : Endianness::BIG);
    INVARIANT(one.length() == 2 * bytes.size());
    INVARIANT(one.isEmpty() || one == other);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8* data, size_t size) {
  Script script(data, size);
  while (!script.ended()) {
    const size_t n = script.count();
    const int value = script.number<int>();
    const std::string bytes = script.bytes();
    const std::string text = upToZero(bytes);
    const std::string other = upToZero(script.bytes());
    const size_t bases[] = {0, 2, 8, 10, 16, 36};
    checkCharacter(static_cast<char>(value));
    checkHexToArray(text, n % 80);
    checkComparisons(text.c_str(), other.c_str(), n);
    checkComparisons(text.c_str(), nullptr, n);
    checkComparisons(nullptr, text.c_str(), n);
    checkSearch(text, other, n);
    checkFixed(text, n, value);
    checkStrntol(text, n, static_cast<int>(bases[script.byte() % 6]));
    checkUnquoting(text);
    checkAppendHex(bytes);
  }
  return 0;
}
