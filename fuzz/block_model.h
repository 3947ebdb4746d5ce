#pragma once

#include <cctype>

#include "fuzz/reference.h"

// What the constants with reserved names say, for the targets of whole blocks.
namespace reference {

inline const Field* constantOf(const Schema& schema, std::string_view name) {
  const Field* field = findField(schema, name);
  return field != nullptr && (field->flags & META) != 0 ? field : nullptr;
}

inline bool isSingle(const Field& field, uint8 type) {
  return field.type == type && (field.flags & REPEATED) == 0;
}

inline std::optional<uint32> instanceOf(const Schema& schema) {
  const Field* field = constantOf(schema, "__instance");
  if (field == nullptr) return std::nullopt;
  for (const Type type : {UINT8, UINT16, UINT32}) {
    if (!isSingle(*field, type)) continue;
    uint32 number = 0;
    for (size_t i = 0; i < field->constant->content.size(); ++i) {
      number |= uint32{static_cast<uint8>(field->constant->content[i])}
                << (8 * i);
    }
    return number;
  }
  return std::nullopt;
}

// Of a text of 36 characters, the pairs of digits in its five groups. A bad
// digit ends the parse, a zero byte in place of a pair only its group; bytes
// that are not reached are zero.
inline std::string parseUuid(const std::string& text) {
  std::string bytes(16, '\0');
  if (text.size() != 36) return bytes;
  constexpr std::string_view FORM = "aabbccdd-eeff-gghh-iijj-kkllmmnnoopp";
  const auto isDigit = [](char c) {
    return std::isxdigit(static_cast<unsigned char>(c)) != 0;
  };
  for (size_t i = 0; i < FORM.size(); ++i) {
    if (FORM[i] == '-') continue;
    if (text[i] == '\0') {
      i = std::min(FORM.find('-', i), FORM.size());
      continue;
    }
    if (!isDigit(text[i]) || !isDigit(text[i + 1])) break;
    bytes[static_cast<size_t>(FORM[i] - 'a')] =
        static_cast<char>(std::stoi(text.substr(i, 2), nullptr, 16));
    ++i;
  }
  return bytes;
}

inline std::optional<std::string> uuidOf(const Schema& schema) {
  const Field* field = constantOf(schema, "__uuid");
  if (field == nullptr || !isSingle(*field, STRING)) return std::nullopt;
  const std::string bytes = parseUuid(field->constant->content);
  if (bytes == std::string(16, '\0')) return std::nullopt;
  return bytes;
}

}  // namespace reference
