// Writes data packets. The layout stands in serializer.h.

#include "foundation/diagnostics.h"
#include "schema/checks.h"
#include "schema/field_finder.h"
#include "serialization/packet_format.h"
#include "serialization/serializer.h"
#include "serialization/varint_io.h"

namespace Brindle {

namespace {

bool appendEntry(FieldFinder& fields, const DataMap::Entry& entry, uint8 depth,
                 gs::container<uint8>& body) {
  const MetaField* field = fields.find(entry.name);
  if (field == nullptr) {
    pqpr("Wrong field name: %s", entry.name.c_str());
    return false;
  }
  if (field->isMeta()) {
    pqpr("The field has a meta flag, it is not transmitted in the data");
    return false;
  }
  if (!appendVarint(body, field->index)) {
    pqpr("Failed to append field ID");
    return false;
  }
  if (!Serializer::serializeField(*field, entry.value, body, depth)) {
    pqpr("Failed to serialize field (%s)", field->name.c_str());
    return false;
  }
  return true;
}

}  // namespace

gs::container<uint8> Serializer::serialize(const Meta& meta, const DataMap& map,
                                           uint8 depth) {
  if (!checkNesting(depth)) return {};
  constexpr size_t PER_ENTRY = 16;  // as a rule enough
  gs::container<uint8> body;
  body.reserve(PER_ENTRY * map.size());
  FieldFinder fields(meta);
  for (const DataMap::Entry& entry : map.data()) {
    if (!appendEntry(fields, entry, depth, body)) return {};
  }
  gs::container<uint8> packet;
  packet.reserve(Packet::HEADER_SIZE + Varint::LONGEST + body.size);
  if (!appendNumber(packet, Packet::VERSION) ||
      !appendNumber(packet, uint8{0}) || !appendVarint(packet, body.size) ||
      !appendToBuffer(packet, body.data, body.size)) {
    pqpr("Failed to append data");
    return {};
  }
  return packet;
}

gs::container<uint8> Serializer::serializeWithCrc(const Meta& meta,
                                                  const DataMap& map,
                                                  uint16* crcOut) {
  gs::container<uint8> packet = serialize(meta, map, 0);
  if (!checkSize(packet, Packet::HEADER_SIZE)) return {};
  packet[Packet::FLAGS_OFFSET] |= Packet::HAS_CRC;
  if (!appendCrc16(packet, crcOut)) return {};
  return packet;
}

}  // namespace Brindle
