// Reads packed schema blocks. The layout stands in meta_header.h.

#include <new>

#include "foundation/buffer.h"
#include "foundation/diagnostics.h"
#include "schema/checks.h"
#include "schema/meta.h"
#include "schema/meta_header.h"
#include "serialization/serializer.h"

namespace Brindle {

namespace {

// What both readers of a header ask of it, in this order.
bool checkHeader(const PackedMetaHeader& header, size_t bufferLength) {
  if (bufferLength < header.contentSize()) {
    pqpr("Invalid meta size");
    return false;
  }
  if (header.magic != PackedMetaHeader::MAGIC) {
    pqpr("Invalid magic number in meta header");
    return false;
  }
  if (header.version != PackedMetaHeader::VERSION) {
    pqpr("Unsupported meta version");
    return false;
  }
  return true;
}

// Reported by the reader of a constant, and again by the reader of its field.
bool constantFailed() {
  pqpr("Failed to deserialize field");
  return false;
}

// What no block is to blame for must not look like a fault of the block.
[[noreturn]] void outOfMemory(const char* line) {
  pqpr("%s", line);
  throw std::bad_alloc();
}

}  // namespace

bool Meta::validateHeader(const PackedMetaHeader& header, size_t bufferLength) {
  if (!checkHeader(header, bufferLength)) return false;
  if (header.fieldsCount > PackedMetaHeader::MAX_FIELDS) {
    pqpr("Wrong fields count %d", static_cast<int>(header.fieldsCount));
    return false;
  }
  return true;
}

bool Meta::processCrc(const PackedMetaHeader& header,
                      const gs::ConstBuf& buffer, const uint16* expectedCrc) {
  size_t offset = header.contentSize();
  if (!header.hasCrc()) {
    return expectedCrc == nullptr || checkCrc16(buffer, offset, *expectedCrc);
  }
  uint16 stored = 0;
  if (!extractNumber(buffer, offset, stored)) return crc16Mismatch();
  if (expectedCrc != nullptr && *expectedCrc != stored) {
    pqpr("Meta has CRC, but input CRC16 mismatch");
    return false;
  }
  return checkCrc16(buffer, header.contentSize(), stored);
}

bool Meta::extractStrFromBuffer(const gs::ConstBuf& buffer, size_t& offset,
                                uint32 length, gs::ConstBuf& out) {
  if (length > PackedMetaHeader::MAX_NAME) {
    pqpr("Name is very long %u", length);
    return false;
  }
  return extractView(buffer, offset, out, length);
}

bool Meta::processEnumField(const gs::ConstBuf& buffer, size_t& offset,
                            NamePool& names, EnumMapping& out) {
  uint32 count = 0;
  if (!extractNumber(buffer, offset, count)) return false;
  for (uint32 i = 0; i < count; ++i) {
    uint32 length = 0;
    gs::ConstBuf name;
    uint8 code = 0;
    if (!extractNumber(buffer, offset, length) ||
        !extractStrFromBuffer(buffer, offset, length, name) ||
        !extractNumber(buffer, offset, code)) {
      return false;
    }
    if (!out.append({names.make(name), code})) throw std::bad_alloc();
  }
  return true;
}

bool Meta::processDataMapField(const gs::ConstBuf& buffer, size_t& offset,
                               uint8 depth, std::shared_ptr<Meta>& out) {
  uint32 size = 0;
  if (!extractNumber(buffer, offset, size)) return false;
  gs::ConstBuf nested;
  if (!extractView(buffer, offset, nested, size)) {
    pqpr("Meta size is too large");
    return false;
  }
  if (size == 0) return false;
  out = unpack(nested, depth, nullptr);
  if (!out) pqpr("Failed to unpack meta");
  return out != nullptr;
}

bool Meta::processFieldValue(MetaField& field, const gs::ConstBuf& buffer,
                             size_t& offset, uint8 depth) {
  if (!field.isMeta()) return true;
  FieldValue value;
  if (!Serializer::deserializeField(field, buffer, offset, value, depth)) {
    return constantFailed();
  }
  try {
    field.value = std::make_shared<FieldValue>(std::move(value));
  } catch (const std::bad_alloc&) {
    outOfMemory("Failed to create field value");
  }
  return true;
}

bool Meta::unpackDescriptor(const gs::ConstBuf& buffer, size_t& offset,
                            uint8 level, NamePool& names, MetaField& out) {
  uint32 length = 0;
  gs::ConstBuf name;
  if (!extractNumber(buffer, offset, length) ||
      !extractStrFromBuffer(buffer, offset, length, name) ||
      !extractNumber(buffer, offset, out.type) ||
      !extractNumber(buffer, offset, out.flags)) {
    return false;
  }
  out.name = names.make(name);
  if (out.type == FieldType::ENUM) {
    return processEnumField(buffer, offset, names, out.enumMapping);
  }
  if (out.type == FieldType::DATA_MAP) {
    return processDataMapField(buffer, offset, level, out.meta);
  }
  return true;
}

bool Meta::unpackField(const gs::ConstBuf& buffer, size_t& offset, uint8 level,
                       NamePool& names) {
  MetaField read;
  if (!unpackDescriptor(buffer, offset, level, names, read)) return false;
  MetaField* added = nullptr;
  bool changed = false;
  if (!place(std::move(read), added, changed)) {
    pqpr("Failed to add field");
    return false;
  }
  // A second field of the same name has been merged into the first, whose
  // flags then decide.
  return processFieldValue(*added, buffer, offset, level) || constantFailed();
}

std::unique_ptr<Meta> Meta::unpack(const gs::ConstBuf& buffer, uint8 depth,
                                   const uint16* expectedCrc) {
  const unsigned level = depth + 1U;
  if (!checkNesting(level)) return nullptr;

  PackedMetaHeader header;
  size_t offset = 0;
  if (!header.extract(buffer, offset)) {
    pqpr("Buffer too small for meta header");
    return nullptr;
  }
  gs::ConstBuf name;
  if (!validateHeader(header, buffer.size) ||
      !processCrc(header, buffer, expectedCrc) ||
      !extractStrFromBuffer(buffer, offset, header.nameLength, name)) {
    return nullptr;
  }

  std::unique_ptr<Meta> meta(new Meta(cloneOf(name), header.flags));
  if (!meta->fields_.reserve(header.fieldsCount)) {
    outOfMemory("Failed to get field");
  }
  NamePool names(header.fieldsCount);
  for (uint32 i = 0; i < header.fieldsCount; ++i) {
    if (!meta->unpackField(buffer, offset, static_cast<uint8>(level), names)) {
      return nullptr;
    }
  }
  // Once for all fields: constants come after their fields have been added.
  meta->updateCrc();
  if (meta->crc() != header.crc) {
    pqpr("CRC mismatch");
    return nullptr;
  }
  return meta;
}

size_t Meta::getPacketMetaSize(const uint8* data, size_t length) {
  PackedMetaHeader header;
  size_t offset = 0;
  if (data == nullptr || !header.extract({data, length}, offset) ||
      !checkHeader(header, length)) {
    return 0;
  }
  return header.contentSize() + (header.hasCrc() ? sizeof(uint16) : 0);
}

}  // namespace Brindle
