#include <algorithm>

#include "fuzz/reference.h"

namespace reference {

namespace {

constexpr size_t FLAGS_OFFSET = 5;
constexpr size_t BODY_SIZE_OFFSET = 6;
constexpr size_t CRC_OFFSET = 8;
constexpr size_t COUNT_OFFSET = 12;

// The field of that name in the schema, which may have gained from `read`; null
// if the two cannot be one.
Field* insert(Schema& schema, Field&& read) {
  if (read.type == ENUM && read.entries.empty()) return nullptr;
  auto* known = const_cast<Field*>(findField(schema, read.name));
  if (known == nullptr) return &schema.fields.emplace_back(std::move(read));
  if (known->type != read.type) return nullptr;
  for (const auto& added : read.entries) {
    const bool has = std::any_of(
        known->entries.begin(), known->entries.end(),
        [&](const auto& entry) { return sameName(entry.first, added.first); });
    if (!has) known->entries.push_back(added);
  }
  return known;
}

}  // namespace

bool Reader::name(std::string& out) {
  uint32 length = 0;
  return number(length) && length <= 254 && take(length, out);
}

bool Reader::schema(unsigned level, Schema& out, const uint16* expected) {
  const size_t start = at;
  if (level > MAX_NESTING || end - at < HEADER_SIZE) return false;
  if (repair) bytes.replace(at, FLAGS_OFFSET, "MHCS\x0A");
  std::string head;
  uint16 bodySize = 0;
  uint32 crc = 0;
  uint32 count = 0;
  uint8 nameLength = 0;
  take(FLAGS_OFFSET, head);
  number(out.flags);
  number(bodySize);
  number(crc);
  number(count);
  number(nameLength);
  if (repair) count = std::min(count, 100U);
  if (head != "MHCS\x0A" || count > 100 || nameLength > 254) return false;
  if (!repair && end - start < HEADER_SIZE + bodySize) return false;
  if (!take(nameLength, out.name)) return false;

  for (uint32 i = 0; i < count; ++i) {
    if (field(level, out)) continue;
    if (!repair) return false;
    // Once more, without the field that cannot be read and those behind it.
    patch(start + COUNT_OFFSET, i);
    at = start;
    out = {};
    return schema(level, out);
  }
  if (repair) {
    patch(start + COUNT_OFFSET, count);
    repairSize(start, out);
    bodySize = static_cast<uint16>(at - start - HEADER_SIZE);
    patch(start + CRC_OFFSET, crc = out.crc());
  }
  return crc == out.crc() && trailer(start, HEADER_SIZE + bodySize,
                                     (out.flags & HAS_CRC) != 0, expected);
}

// The size of what has been read, and no trailer where there is no room.
void Reader::repairSize(size_t start, Schema& out) {
  patch(start + BODY_SIZE_OFFSET,
        static_cast<uint16>(at - start - HEADER_SIZE));
  if (end - at < 2) out.flags &= static_cast<uint8>(~HAS_CRC);
  patch(start + FLAGS_OFFSET, out.flags);
}

bool Reader::trailer(size_t start, size_t extent, bool present,
                     const uint16* expected) {
  const uint16 crc = crc16(std::string_view(bytes).substr(start, extent));
  if (!present) return expected == nullptr || *expected == crc;
  if (end - start < extent + 2) return false;
  if (repair) patch(start + extent, crc);
  at = start + extent;
  uint16 stored = 0;
  return number(stored) && stored == crc &&
         (expected == nullptr || *expected == stored);
}

bool Reader::field(unsigned level, Schema& out) {
  Field read;
  if (!name(read.name) || !number(read.type) || !number(read.flags)) {
    return false;
  }
  if (read.type == ENUM && !entries(read)) return false;
  if (read.type == DATA_MAP && !nestedSchema(level, read)) return false;
  Field* field = insert(out, std::move(read));
  if (field == nullptr) return false;
  if ((field->flags & META) == 0) return true;
  return value(*field, level, field->constant.emplace());
}

bool Reader::entries(Field& out) {
  uint32 count = 0;
  if (!number(count)) return false;
  for (uint32 i = 0; i < count; ++i) {
    auto& [text, code] = out.entries.emplace_back();
    if (!name(text) || !number(code)) return false;
  }
  return true;
}

bool Reader::nestedSchema(unsigned level, Field& out) {
  uint32 size = 0;
  if (!number(size) || size > end - at) return false;
  out.nested = std::make_shared<Schema>();
  Reader inner(bytes, at, at + size, repair);
  at += size;
  return inner.schema(level + 1, *out.nested);
}

}  // namespace reference
