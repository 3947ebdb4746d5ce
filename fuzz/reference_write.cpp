#include <algorithm>

#include "fuzz/reference.h"

namespace reference {

namespace {

std::string sized(std::string_view text) {
  return le(static_cast<uint32>(text.size())) + std::string(text);
}

bool append(std::string& out, const std::optional<std::string>& part) {
  if (part) out += *part;
  return part.has_value();
}

bool appendField(std::string& out, const Field& field) {
  out += sized(field.name) + le(field.type) + le(field.flags);
  if (field.type == ENUM) {
    out += le(static_cast<uint32>(field.entries.size()));
    for (const auto& [name, code] : field.entries)
      out += sized(name) + le(code);
  }
  if (field.type == DATA_MAP) {
    const std::optional<std::string> nested = write(*field.nested);
    if (!nested) return false;
    out += sized(*nested);
  }
  return (field.flags & META) == 0 || append(out, field.constant->encoded);
}

std::string checkedPart(const Field& field) {
  std::string out = field.name + le(field.type) + le(field.flags);
  for (const auto& [name, code] : field.entries) out += name + le(code);
  if (field.nested) out += le(field.nested->crc());
  if (field.constant) out += le(crc32(field.constant->content));
  return out;
}

}  // namespace

bool sameName(std::string_view a, std::string_view b) {
  return a.substr(0, a.find('\0')) == b.substr(0, b.find('\0'));
}

const Field* findField(const Schema& schema, std::string_view name) {
  for (const Field& field : schema.fields) {
    if (sameName(field.name, name)) return &field;
  }
  return nullptr;
}

uint32 Schema::crc() const {
  std::string checked = name + le(flags);
  for (const Field& field : fields) checked += checkedPart(field);
  return crc32(checked);
}

bool Schema::nestedHasCrc() const {
  return std::any_of(fields.begin(), fields.end(), [](const Field& field) {
    return field.nested && ((field.nested->flags & HAS_CRC) != 0 ||
                            field.nested->nestedHasCrc());
  });
}

std::optional<std::string> write(const Schema& schema) {
  std::string body = schema.name;
  for (const Field& field : schema.fields) {
    if (!appendField(body, field)) return std::nullopt;
  }
  return "MHCS\x0A" + le(schema.flags) + le(static_cast<uint16>(body.size())) +
         le(schema.crc()) + le(static_cast<uint32>(schema.fields.size())) +
         le(static_cast<uint8>(schema.name.size())) + body;
}

std::optional<std::string> writeWithCrc(const Schema& schema) {
  Schema flagged = schema;
  flagged.flags |= HAS_CRC;
  std::optional<std::string> out = write(flagged);
  if (out) *out += le(crc16(*out));
  return out;
}

std::optional<std::string> writeRecord(const Schema& schema,
                                       const std::vector<Entry>& record) {
  std::string body;
  for (const Entry& entry : record) {
    if ((schema.fields[entry.field].flags & META) != 0) return std::nullopt;
    body += varint(entry.field);
    if (!append(body, entry.value.encoded)) return std::nullopt;
  }
  return std::string("\x0A\0", 2) + varint(body.size()) + body;
}

Value asValue(const Schema& schema, const std::vector<Entry>& record) {
  Value out{{}, writeRecord(schema, record)};
  for (const Entry& entry : record) {
    out.content +=
        schema.fields[entry.field].name + le(crc32(entry.value.content));
  }
  if (out.encoded) out.encoded = varint(out.encoded->size()) + *out.encoded;
  return out;
}

}  // namespace reference
