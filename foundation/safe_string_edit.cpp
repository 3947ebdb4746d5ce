#include <algorithm>
#include <bitset>
#include <cstring>

#include "foundation/safe_string.h"
#include "foundation/text.h"

namespace {

size_t countOf(const char* text, const char* part, size_t partLength) {
  size_t found = 0;
  while ((text = std::strstr(text, part)) != nullptr) {
    ++found;
    text += partLength;
  }
  return found;
}

}  // namespace

SafeString& SafeString::replace(const char* from, const char* to,
                                size_t start) {
  // Without what stands behind a zero byte.
  const size_t oldLength = begin == nullptr ? 0 : gs::strnlen(begin, length());
  if (from == nullptr || *from == '\0' || start >= oldLength) return done(true);
  const size_t fromLength = std::strlen(from);
  const size_t toLength = to == nullptr ? 0 : std::strlen(to);
  const size_t found = countOf(begin + start, from, fromLength);
  if (found == 0) return done(true);

  // Put together aside, so that `from` and `to` may lie inside this string.
  const size_t newLength = oldLength - found * fromLength + found * toLength;
  if (!canGrow && newLength >= size()) return done(false);
  SafeString result(newLength + 1, false);
  const char* rest = begin + start;
  result.append(begin, start);
  while (const char* match = std::strstr(rest, from)) {
    result.append(rest, static_cast<size_t>(match - rest)).append(to);
    rest = match + fromLength;
  }
  result.append(rest);
  if (result.size() == 0) return done(false);
  return setBytes(result.begin, result.length());
}

SafeString& SafeString::replace(char from, char to) {
  const char set[] = {from, '\0'};
  return replace(set, to);
}

SafeString& SafeString::replace(const char* set, char to) {
  if (set == nullptr) return done(true);
  // Noted down first: the set may lie inside this string.
  std::bitset<256> replaced;
  for (; *set != '\0'; ++set) replaced.set(static_cast<uint8>(*set));
  mapRange(0, SIZE_MAX,
           [&](char c) { return replaced[static_cast<uint8>(c)] ? to : c; });
  return to == '\0' ? validate(true) : done(true);
}

SafeString& SafeString::trimLeft(size_t n) {
  if (n >= length()) return clear();
  std::memmove(begin, begin + n, length() - n);
  setLength(length() - n);
  return done(true);
}

SafeString& SafeString::trimRight(size_t n) {
  if (n >= length()) return clear();
  setLength(length() - n);
  return done(true);
}

SafeString& SafeString::cut(size_t newLength) {
  if (newLength < length()) setLength(newLength);
  return done(true);
}

SafeString& SafeString::trimLeft() {
  size_t blanks = 0;
  while (blanks < length() && isSpace(begin[blanks])) ++blanks;
  return trimLeft(blanks);
}

SafeString& SafeString::trimRight() {
  size_t blanks = 0;
  while (blanks < length() && isSpace(*(end - 1 - blanks))) ++blanks;
  return trimRight(blanks);
}

SafeString& SafeString::trim() { return trimRight().trimLeft(); }

SafeString& SafeString::fill(char c) {
  if (begin == nullptr) return done(true);
  std::memset(begin, c, size() - 1);
  end = last;
  return validate(true);
}

template <class Map>
SafeString& SafeString::mapRange(size_t start, size_t n, Map map) {
  if (start >= length()) return done(true);
  char* stop = n < length() - start ? begin + start + n : end;
  std::transform(begin + start, stop, begin + start, map);
  return done(true);
}

SafeString& SafeString::toUpper() { return toUpper(0, length()); }
SafeString& SafeString::toLower() { return toLower(0, length()); }
SafeString& SafeString::toUpper(size_t start, size_t n) {
  return mapRange(start, n, [](char c) { return ::toUpper(c); });
}
SafeString& SafeString::toLower(size_t start, size_t n) {
  return mapRange(start, n, [](char c) { return ::toLower(c); });
}

SafeString& SafeString::firstWordToUpper() {
  size_t start = 0;
  while (start < length() && isSpace(begin[start])) ++start;
  size_t stop = start;
  while (stop < length() && !isSpace(begin[stop])) ++stop;
  return toUpper(start, stop - start);
}

bool SafeString::isEqual(const char* text) const {
  return begin != nullptr && text != nullptr &&
         (begin == text || std::strcmp(begin, text) == 0);
}

std::partial_ordering SafeString::operator<=>(const char* text) const {
  if (begin == nullptr || text == nullptr) {
    return std::partial_ordering::unordered;
  }
  return std::strcmp(begin, text) <=> 0;
}

bool SafeString::startsWith(const char* prefix) const {
  return begin != nullptr && prefix != nullptr &&
         std::strncmp(begin, prefix, std::strlen(prefix)) == 0;
}

bool SafeString::endsWith(const char* suffix) const {
  return begin != nullptr && ::endsWith(begin, suffix);
}
