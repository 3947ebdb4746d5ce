#include <algorithm>

#include "fuzz/reference.h"

namespace reference {

namespace {

constexpr uint8 VERSION = 10;

size_t widthOf(uint8 type) {
  constexpr size_t WIDTHS[] = {1, 2, 4, 8, 1, 2, 4, 8, 4, 0, 1, 1, 0};
  return WIDTHS[type];
}

bool isVarint(uint8 type) {
  return (type >= INT16 && type <= INT64) || (type >= UINT16 && type <= UINT64);
}

uint64 lowBits(uint64 value, size_t width) {
  return width == 8 ? value : value & ((uint64{1} << (8 * width)) - 1);
}

// Content and encoding of an integer that stood as the varint `raw`.
Value integer(uint8 type, uint64 raw) {
  const size_t width = widthOf(type);
  raw = lowBits(raw, width);
  uint64 number = raw;
  if (type <= INT64) number = raw % 2 == 0 ? raw / 2 : ~(raw / 2);
  return {le(number).substr(0, width), reference::varint(raw)};
}

bool hasCode(const Field& field, char code) {
  return std::any_of(field.entries.begin(), field.entries.end(),
                     [&](const auto& entry) {
                       return static_cast<char>(entry.second) == code;
                     });
}

}  // namespace

bool Reader::take(size_t n, std::string& out) {
  if (end - at < n) return false;
  out = bytes.substr(at, n);
  at += n;
  return true;
}

bool Reader::varint(uint64& out) {
  if (at == end) return false;
  out = 0;
  for (unsigned shift = 0; shift < 70; shift += 7) {
    if (at == end) return true;
    const auto byte = static_cast<uint8>(bytes[at++]);
    out |= uint64{byte & 127U} << shift;
    if (byte < 128) return true;
  }
  out = 0;
  return true;
}

bool Reader::value(const Field& field, unsigned depth, Value& out) {
  if (field.type >= TYPE_COUNT || depth > MAX_NESTING) return false;
  if ((field.flags & REPEATED) == 0) return single(field, depth, out);
  uint64 count = 0;
  if (!varint(count) || (count == 0 && !isVarint(field.type))) return false;
  out = {{}, reference::varint(count)};
  for (uint64 i = 0; i < count; ++i) {
    Value element;
    if (!single(field, depth, element)) return false;
    out.content +=
        field.type == DATA_MAP ? le(crc32(element.content)) : element.content;
    if (!element.encoded) out.encoded.reset();
    if (out.encoded) *out.encoded += *element.encoded;
  }
  return true;
}

bool Reader::single(const Field& field, unsigned depth, Value& out) {
  if (field.type == DATA_MAP) {
    std::vector<Entry> record;
    if (!sizedPacket(*field.nested, depth, record)) return false;
    out = asValue(*field.nested, record);
    return true;
  }
  if (isVarint(field.type)) {
    uint64 raw = 0;
    if (!varint(raw)) return false;
    out = integer(field.type, raw);
    return true;
  }
  uint64 size = widthOf(field.type);
  std::string prefix;
  if (field.type == STRING) {
    if (!varint(size)) return false;
    prefix = reference::varint(size);
  }
  if (!take(size, out.content)) return false;
  out.encoded = prefix + out.content;
  return field.type != ENUM || hasCode(field, out.content[0]);
}

bool Reader::sizedPacket(const Schema& schema, unsigned depth,
                         std::vector<Entry>& out) {
  uint64 size = 0;
  if (!varint(size) || size > end - at) return false;
  Reader inner(bytes, at, at + size, repair);
  at += size;
  return inner.packet(schema, depth + 1, out);
}

bool Reader::packet(const Schema& schema, unsigned depth,
                    std::vector<Entry>& out, const uint16* expected) {
  const size_t start = at;
  if (depth > MAX_NESTING || end - at < 3) return false;
  if (repair) patch(start, VERSION);
  uint8 version = 0;
  uint8 flags = 0;
  uint64 length = 0;
  number(version);
  number(flags);
  varint(length);
  const size_t extent = static_cast<uint16>(at - start + length);
  if (version != VERSION) return false;
  if (extent > end - start)
    return shorten(start, end) && packet(schema, depth, out);
  while (at < start + extent) {
    const size_t before = at;
    if (entry(schema, depth, out)) continue;
    out.clear();
    return shorten(start, before) && packet(schema, depth, out);
  }
  const bool hasTrailer = (flags & HAS_CRC) != 0;
  if (repair && hasTrailer && end - start < extent + 2) {
    patch(start + 1, static_cast<uint8>(flags & ~HAS_CRC));
    return !out.empty();
  }
  // A checksum that is given beside a stored one does not count.
  return trailer(start, extent, hasTrailer, hasTrailer ? nullptr : expected) &&
         !out.empty();
}

// Lets the body of the packet end there, in a varint of the same width.
bool Reader::shorten(size_t start, size_t bodyEnd) {
  if (!repair) return false;
  at = start + 2;
  uint64 length = 0;
  varint(length);
  uint64 rest = bodyEnd - at;
  for (size_t i = start + 2; i < at; ++i, rest >>= 7) {
    bytes[i] = static_cast<char>((rest & 127) | (i + 1 < at ? 128 : 0));
  }
  at = start;
  return rest == 0;
}

bool Reader::entry(const Schema& schema, unsigned depth,
                   std::vector<Entry>& out) {
  uint64 index = 0;
  varint(index);
  const auto field = static_cast<uint16>(index);
  if (field >= schema.fields.size()) return false;
  return value(schema.fields[field], depth,
               out.emplace_back(Entry{field, {}}).value);
}

}  // namespace reference
