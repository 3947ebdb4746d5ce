#pragma once

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>

#include "foundation/types.h"

// A text argument: none stands for a null pointer.
using OptionalText = std::optional<std::string>;

inline std::string upToZero(const std::string& text) {
  return text.substr(0, text.find('\0'));
}

inline bool isBlank(char c) {
  return c != '\0' && std::strchr(" \t\n\v\f\r", c) != nullptr;
}

inline std::string printed(double value, int decimals) {
  char text[600];
  std::snprintf(text, sizeof text, "%.*f", decimals, value);
  return text;
}

// What a SafeString is: its bytes, how many its buffer has (0: there is none),
// whether it may grow, and how the last operation went.
struct StringModel {
  std::string text;
  size_t capacity = 0;
  bool growable = true;
  bool borrowed = false;
  bool ok = true;

  bool makeRoom(size_t length) {
    if (length < capacity) return true;
    if (growable) capacity = (length + 32) / 32 * 32;
    return growable;
  }
  void appendBytes(const std::string& bytes) {
    ok = bytes.empty() || makeRoom(text.size() + bytes.size());
    if (ok) text += bytes;
  }
  void append(const OptionalText& added, size_t n = SIZE_MAX) {
    appendBytes(upToZero(added.value_or("")).substr(0, n));
  }
  void appendArray(const std::string& bytes) {
    appendBytes(bytes);
    if (ok) text = upToZero(text);
  }
  void forceAppend(char c) {
    appendBytes({c});
    if (ok || text.empty()) return;
    text.back() = c;
    text = upToZero(text);
    ok = true;
  }
  void prepend(const OptionalText& added) {
    const std::string front = upToZero(added.value_or(""));
    ok = makeRoom(text.size() + front.size());
    if (capacity == 0) {
      ok = front.empty();
      return;
    }
    const size_t kept = std::min(front.size(), capacity - 1);
    text = front.substr(0, kept) + text.substr(0, capacity - 1 - kept);
  }
  void setBytes(const std::string& bytes) {
    ok = makeRoom(bytes.size());
    if (ok) text = bytes;
  }
  void set(const OptionalText& from, size_t n = SIZE_MAX) {
    setBytes(upToZero(from.value_or("")).substr(0, n));
  }
  void replace(const OptionalText& from, const OptionalText& to, size_t start) {
    ok = true;
    const std::string part = upToZero(from.value_or(""));
    const std::string with = upToZero(to.value_or(""));
    std::string replaced = upToZero(text);
    if (part.empty() || replaced.find(part, start) == std::string::npos) return;
    while ((start = replaced.find(part, start)) != std::string::npos) {
      replaced.replace(start, part.size(), with);
      start += with.size();
    }
    setBytes(replaced);
  }
  void replaceEach(const OptionalText& set, char to) {
    ok = true;
    if (!set) return;
    const std::string members = upToZero(*set);
    for (char& c : text) {
      if (members.find(c) != std::string::npos) c = to;
    }
    if (to == '\0') text = upToZero(text);
  }
  void erase(size_t from, size_t n) {
    ok = true;
    text.erase(std::min(from, text.size()), n);
  }
  void trimLeft() {
    const auto first = std::find_if_not(text.begin(), text.end(), isBlank);
    erase(0, static_cast<size_t>(first - text.begin()));
  }
  void trimRight() {
    ok = true;
    while (!text.empty() && isBlank(text.back())) text.pop_back();
  }
  void fill(char c) {
    ok = true;
    if (capacity != 0) text = upToZero(std::string(capacity - 1, c));
  }
  void resize(size_t size) {
    ok = !borrowed;
    if (!ok) return;
    capacity = size;
    text.resize(std::min(text.size(), size == 0 ? 0 : size - 1));
  }
  void setCanGrow(bool on) {
    ok = !(borrowed && on);
    if (ok) growable = on;
  }
  // Changes letters between `low` and `high` to the other case.
  void flipCase(size_t start, size_t n, char low, char high) {
    ok = true;
    for (size_t i = start; i < text.size() && i - start < n; ++i) {
      if (text[i] >= low && text[i] <= high) text[i] ^= 0x20;
    }
  }
  void firstWordToUpper() {
    size_t start = 0;
    while (start < text.size() && isBlank(text[start])) ++start;
    size_t end = start;
    while (end < text.size() && !isBlank(text[end])) ++end;
    flipCase(start, end - start, 'a', 'z');
  }
};
