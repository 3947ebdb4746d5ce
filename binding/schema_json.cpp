#include "binding/schema_json.h"

#include <algorithm>
#include <string_view>

namespace brindle_napi {

namespace {

using Brindle::EnumEntry;
using Brindle::Meta;
using Brindle::MetaField;

bool needsEscape(char c) {
  return static_cast<unsigned char>(c) < 0x20 || c == '"' || c == '\\';
}

void writeEscaped(char c, std::string& out) {
  constexpr char DIGITS[] = "0123456789abcdef";
  const auto code = static_cast<unsigned char>(c);
  out.append({'\\', 'u', '0', '0', DIGITS[code >> 4], DIGITS[code & 15]});
}

// What stands between two quotes.
void writeText(const SafeString& text, std::string& out) {
  const char* at = text.c_str();
  const char* end = at + text.length();
  while (true) {
    const char* plain = std::find_if(at, end, needsEscape);
    out.append(at, plain);
    if (plain == end) return;
    writeEscaped(*plain, out);
    at = plain + 1;
  }
}

// Between `open` and `close`, separated by commas.
template <class List, class WriteOne>
void writeEach(const List& list, char open, char close, std::string& out,
               WriteOne&& writeOne) {
  out += open;
  bool first = true;
  for (const auto& element : list) {
    if (!first) out += ',';
    first = false;
    writeOne(element);
  }
  out += close;
}

std::string_view flagsOf(const MetaField& field) {
  if (field.isMeta()) {
    return field.isRepeated() ? R"(","repeated":true,"isMeta":true)"
                              : R"(","repeated":false,"isMeta":true)";
  }
  return field.isRepeated() ? R"(","repeated":true,"isMeta":false)"
                            : R"(","repeated":false,"isMeta":false)";
}

void writeSchema(const Meta& meta, std::string& out);

void writeField(const MetaField& field, std::string& out) {
  out += R"({"name":")";
  writeText(field.name, out);
  out += R"(","type":")";
  out += fieldTypeToString(field.type);
  out += flagsOf(field);
  if (!field.enumMapping.empty()) {
    out += R"(,"enumMapping":)";
    writeEach(field.enumMapping, '{', '}', out, [&](const EnumEntry& entry) {
      out += '"';
      writeText(entry.name, out);
      out += R"(":)";
      out += std::to_string(entry.value);
    });
  }
  if (field.meta) {
    out += R"(,"nested":)";
    writeSchema(*field.meta, out);
  }
  out += '}';
}

void writeSchema(const Meta& meta, std::string& out) {
  out += R"({"name":")";
  writeText(meta.name(), out);
  out += R"(","fields":)";
  writeEach(meta.fields(), '[', ']', out,
            [&](const MetaField& field) { writeField(field, out); });
  out += '}';
}

}  // namespace

std::string schemaToJson(const Meta& meta) {
  constexpr size_t PER_FIELD = 96;  // as a rule
  std::string text;
  text.reserve((meta.fields().count + 1) * PER_FIELD);
  writeSchema(meta, text);
  return text;
}

const char* fieldTypeToString(Brindle::FieldType type) {
  return type == Brindle::FieldType::DATA_MAP ? "datamap"
                                              : Brindle::getNameFiledType(type);
}

}  // namespace brindle_napi
