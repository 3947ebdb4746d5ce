// Reads data packets. The layout stands in serializer.h.

#include <algorithm>
#include <new>

#include "foundation/diagnostics.h"
#include "schema/checks.h"
#include "serialization/packet_format.h"
#include "serialization/serializer.h"
#include "serialization/varint_io.h"

namespace Brindle {

namespace {

// The extent of a packet whose length is V, read from `used` bytes. Part of the
// format: 16 bits, the rest is lost.
uint16 extentOf(uint64 length, uint64 used) {
  return static_cast<uint16>(used + length + 2);
}

// Where the body stands, and what the header says.
struct Extent {
  uint8 flags = 0;
  size_t bodyOffset = 0;
  size_t total = 0;  // up to the trailer
};

bool readHeader(const gs::ConstBuf& packet, Extent& out) {
  if (!checkSize(packet, Packet::MIN_SIZE)) return false;
  size_t offset = 0;
  uint8 version = 0;
  uint64 length = 0;
  extractNumber(packet, offset, version);
  extractNumber(packet, offset, out.flags);
  if (version != Packet::VERSION) {
    pqpr("Unsupported version");
    return false;
  }
  extractVarint(packet, offset, length);
  out.bodyOffset = offset;
  out.total = extentOf(length, offset - Packet::HEADER_SIZE);
  if (packet.size < out.total) {
    pqpr("Invalid data size");
    return false;
  }
  return true;
}

bool checkTrailer(const gs::ConstBuf& packet, const Extent& extent,
                  const uint16* expectedCrc) {
  if ((extent.flags & Packet::HAS_CRC) == 0) {
    return expectedCrc == nullptr ||
           checkCrc16(packet, extent.total, *expectedCrc);
  }
  size_t offset = extent.total;
  uint16 stored = 0;
  if (!extractNumber(packet, offset, stored)) {
    pqpr("Buffer too small for CRC16");
    return false;
  }
  // A warning: the stored checksum decides.
  if (expectedCrc != nullptr && *expectedCrc != stored) {
    pqpr("Data has CRC, but input CRC16 mismatch");
  }
  return checkCrc16(packet, extent.total, stored);
}

// Finds fields by index, of several with the same the first, as a walk from the
// head would; as long as the indexes asked for rise, it goes on where it was.
class IndexFinder {
 public:
  explicit IndexFinder(const Meta& meta) : fields(meta.fields()) {}

  const MetaField* find(uint16 index) {
    if (at == nullptr || index <= highest) {
      at = fields.head;
      highest = 0;
    }
    for (; at != nullptr; at = at->next) {
      highest = std::max(highest, at->value.index);
      if (at->value.index == index) return &at->value;
    }
    return nullptr;
  }

 private:
  const gs::LinkedList<MetaField>& fields;
  const gs::LinkedList<MetaField>::Node* at = nullptr;
  uint16 highest = 0;  // of the fields up to this one
};

bool readEntry(IndexFinder& fields, const gs::ConstBuf& packet, size_t& offset,
               uint8 depth, DataMap& record) {
  uint64 decoded = 0;
  extractVarint(packet, offset, decoded);
  const auto id = static_cast<uint16>(decoded);
  const MetaField* field = fields.find(id);
  if (field == nullptr) {
    pqpr("Wrong field ID: %d", int{id});
    return false;
  }
  FieldValue* value = record.emplace(field->name);
  if (value == nullptr) {
    pqpr("Failed to emplace field (%s)", field->name.c_str());
    throw std::bad_alloc();
  }
  if (!Serializer::deserializeField(*field, packet, offset, *value, depth)) {
    pqpr("Failed to deserialize field (%s)", field->name.c_str());
    return false;
  }
  return true;
}

}  // namespace

DataMap Serializer::deserialize(const Meta& meta, const gs::ConstBuf& packet,
                                uint8 depth, const uint16* expectedCrc) {
  try {
    return deserializeOrThrow(meta, packet, depth, expectedCrc);
  } catch (const std::bad_alloc&) {
    return {};
  }
}

DataMap Serializer::deserializeOrThrow(const Meta& meta,
                                       const gs::ConstBuf& packet, uint8 depth,
                                       const uint16* expectedCrc) {
  Extent extent;
  if (!checkNesting(depth) || !readHeader(packet, extent) ||
      !checkTrailer(packet, extent, expectedCrc)) {
    return {};
  }
  DataMap record;
  // As a rule each field comes once; an entry takes two bytes at least.
  const uint64 bodySize =
      extent.total - std::min(extent.bodyOffset, extent.total);
  record.reserve(std::min(meta.fields().count, bodySize / 2));
  IndexFinder fields(meta);
  // A value may reach past the extent: nothing tells its length but its type.
  for (size_t offset = extent.bodyOffset; offset < extent.total;) {
    if (!readEntry(fields, packet, offset, depth, record)) return {};
  }
  if (record.empty()) {
    pqpr("deserialize: No data available (%s)", meta.name().c_str());
  }
  return record;
}

bool Serializer::deserializeDataMap(const gs::ConstBuf& buf, size_t& offset,
                                    const Meta& meta, DataMap& out,
                                    uint8 depth) {
  uint64 size = 0;
  gs::ConstBuf packet;
  if (!checkNesting(depth) || !extractVarint(buf, offset, size) || size == 0 ||
      !extractView(buf, offset, packet, size)) {
    return false;
  }
  DataMap record =
      deserializeOrThrow(meta, packet, static_cast<uint8>(depth + 1), nullptr);
  if (record.empty()) return false;
  out = std::move(record);
  return true;
}

uint32 Serializer::getMetaIdFromPacket(const gs::ConstBuf& buf) {
  size_t offset = 0;
  uint64 value = 0;
  const bool skipped = extractVarint(buf, offset, value);
  const bool found = skipped && extractVarint(buf, offset, value);
  return found ? static_cast<uint32>(value) : 0xFFFFFFFF;
}

gs::container<uint8> Serializer::getPacket(const gs::ConstBuf& buf,
                                           size_t offset) {
  gs::container<uint8> found;
  for (size_t start = offset; start < buf.size; ++start) {
    size_t behind = start;
    uint64 length = 0;
    extractVarint(buf, behind, length);
    const uint16 extent = extentOf(length, behind - start);
    if (behind < buf.size && extent <= buf.size - start) {
      appendToBuffer(found, buf.data + start, extent);
      break;
    }
  }
  return found;
}

}  // namespace Brindle
