#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "foundation/container.h"

// Text serves as bytes here; "0A FF" is spelled by fromHex() and hex().
inline gs::ConstBuf view(const std::string& text) {
  return {reinterpret_cast<const uint8*>(text.data()), text.size()};
}

// In storage of exactly its size: the address sanitizer sees any read past it.
inline gs::container<uint8> bytes(const std::string& text) {
  gs::container<uint8> copy;
  copy.assign(view(text).data, text.size());
  return copy;
}

// The number as its n little-endian bytes.
inline std::string le(uint64 value, size_t n) {
  std::string out;
  for (; n != 0; --n, value >>= 8) out.push_back(static_cast<char>(value));
  return out;
}

inline std::string fromHex(const std::string& text) {
  std::istringstream in(text);
  std::string out;
  for (unsigned byte = 0; in >> std::hex >> byte;) out += le(byte, 1);
  return out;
}
inline std::string hex(const gs::ConstBuf& from) {
  std::string out;
  for (size_t i = 0; i < from.size; ++i) {
    out += i == 0 ? "" : " ";
    out += "0123456789ABCDEF"[from.data[i] >> 4];
    out += "0123456789ABCDEF"[from.data[i] & 15];
  }
  return out;
}

// Everything that `call` prints to standard output, then the text it returns.
template <class Call>
std::string outcomeOf(Call&& call) {
  testing::internal::CaptureStdout();
  const std::string result = call();
  return testing::internal::GetCapturedStdout() + result;
}
