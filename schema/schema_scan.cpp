#include "schema/schema_scan.h"

#include <algorithm>

#include "foundation/crc16.h"
#include "schema/checks.h"
#include "schema/checksum.h"
#include "schema/meta_header.h"
#include "schema/name_index.h"
#include "serialization/serializer.h"

namespace Brindle {

namespace {

// Scans one schema; each function moves past the element it is named after.
class Scan {
 public:
  Scan(const gs::ConstBuf& bytes, unsigned nesting,
       const ConstantVisitor& visitConstant)
      : buffer(bytes), level(nesting), visit(visitConstant) {}

  bool schema(uint32& crc) {
    PackedMetaHeader header;
    if (level > MAX_NESTING || !header.extract(buffer, offset) ||
        !isSound(header)) {
      return false;
    }
    gs::ConstBuf name;
    if (!text(header.nameLength, name)) return false;
    sum.add(header.flags);
    while (count != header.fieldsCount) {
      if (!field()) return false;
    }
    crc = sum.value();
    return crc == header.crc;
  }

 private:
  bool isSound(const PackedMetaHeader& header) const {
    return header.contentSize() <= buffer.size &&
           header.magic == PackedMetaHeader::MAGIC &&
           header.version == PackedMetaHeader::VERSION &&
           header.fieldsCount <= PackedMetaHeader::MAX_FIELDS &&
           (!header.hasCrc() || hasTrailer(header.contentSize()));
  }
  bool hasTrailer(size_t at) const {
    uint16 stored = 0;
    return extractNumber(buffer, at, stored) &&
           CRC16::crc(buffer.data, at - sizeof stored) == stored;
  }

  // Names count in the checksum.
  bool text(uint32 length, gs::ConstBuf& out) {
    if (length > PackedMetaHeader::MAX_NAME ||
        !extractView(buffer, offset, out, length)) {
      return false;
    }
    sum.add(out.data, out.size);
    return true;
  }
  bool sizedText(gs::ConstBuf& out) {
    uint32 length = 0;
    return extractNumber(buffer, offset, length) && text(length, out);
  }
  template <class Number>
  bool number(Number& out) {
    if (!extractNumber(buffer, offset, out)) return false;
    sum.add(out);
    return true;
  }

  bool field() {
    gs::ConstBuf name;
    MetaField read;
    if (!sizedText(name) || !isNew(name) || !number(read.type) ||
        !number(read.flags)) {
      return false;
    }
    if (read.type == FieldType::ENUM) return !read.isMeta() && mapping();
    if (read.type == FieldType::DATA_MAP) return !read.isMeta() && nested();
    return !read.isMeta() || constant(name, read);
  }

  // Another name with the same tag may be an equal one.
  bool isNew(const gs::ConstBuf& name) {
    const uint8* end = name.data + name.size;
    if (std::find(name.data, end, 0) != end) return false;
    const uint32 tag = nameTag(name.data, name.size);
    if (std::find(tags, tags + count, tag) != tags + count) return false;
    tags[count++] = tag;
    return true;
  }

  bool mapping() {
    uint32 entries = 0;
    if (!extractNumber(buffer, offset, entries) || entries == 0) return false;
    for (; entries != 0; --entries) {
      gs::ConstBuf name;
      uint8 code = 0;
      if (!sizedText(name) || !number(code)) return false;
    }
    return true;
  }

  bool nested() {
    uint32 size = 0;
    gs::ConstBuf bytes;
    if (!extractNumber(buffer, offset, size) ||
        !extractView(buffer, offset, bytes, size)) {
      return false;
    }
    uint32 crc = 0;
    if (!Scan(bytes, level + 1, nullptr).schema(crc)) return false;
    sum.add(crc);
    return true;
  }

  bool constant(const gs::ConstBuf& name, const MetaField& field) {
    FieldValue value;
    if (!isKnown(field.type) ||
        !Serializer::deserializeField(field, buffer, offset, value,
                                      static_cast<uint8>(level))) {
      return false;
    }
    sum.add(value.crc());
    if (visit) visit(name, value);
    return true;
  }

  const gs::ConstBuf& buffer;
  size_t offset = 0;
  unsigned level;
  const ConstantVisitor& visit;
  Checksum sum;
  uint32 count = 0;  // fields so far
  uint32 tags[PackedMetaHeader::MAX_FIELDS];
};

}  // namespace

bool scanSchema(const gs::ConstBuf& buffer, const ConstantVisitor& visit) {
  uint32 crc = 0;
  return Scan(buffer, 1, visit).schema(crc);
}

}  // namespace Brindle
