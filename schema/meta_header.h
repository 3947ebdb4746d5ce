#pragma once

#include "foundation/buffer.h"
#include "schema/field_type.h"

namespace Brindle {

// A packed schema block: header, name, field descriptors, optional trailer.
// Numbers are little-endian; nothing is aligned or padded.
//
//   offset  width  field
//   0       4      magic, 0x5343484D: the bytes 4D 48 43 53, "MHCS"
//   4       1      version, 10
//   5       1      flags, MetaFlags
//   6       2      bodySize: bytes after the header, without the trailer
//   8       4      crc: the schema's checksum
//   12      4      fieldsCount, at most 100
//   16      1      nameLength, 0 to 254
//   17      n      name
//   then, for each field:
//           4      name length; readers accept at most 254
//           n      name
//           1      type, FieldType
//           1      flags, FieldFlags
//     enum only:
//           4      entry count
//           for each entry: 4 name length (as above), n name, 1 code
//     data_map only:
//           4      nested size
//           n      nested block, without trailer
//     flagged META only:
//           n      the constant, encoded as a value of the field in a record
//   17 + bodySize, flagged HAS_CRC only:
//           2      CRC-16/MODBUS over all bytes before it
struct PackedMetaHeader {
  static constexpr uint32 MAGIC = 0x5343484D;
  static constexpr uint8 VERSION = 10;
  static constexpr size_t SIZE = 17;
  static constexpr size_t FLAGS_OFFSET = 5;
  static constexpr size_t BODY_SIZE_OFFSET = 6;
  static constexpr size_t CRC_OFFSET = 8;
  static constexpr uint32 MAX_FIELDS = 100;
  static constexpr size_t MAX_NAME = 254;  // of schemas, fields and entries

  uint32 magic = MAGIC;
  uint8 version = VERSION;
  MetaFlags flags = MetaFlags::NONE;
  uint16 bodySize = 0;
  uint32 crc = 0;
  uint32 fieldsCount = 0;
  uint8 nameLength = 0;

  bool append(gs::container<uint8>& buf) const;
  // False, with this header changed, when there are fewer than 17 bytes.
  bool extract(const gs::ConstBuf& buf, size_t& offset);

  // Where the trailer stands, if there is one.
  size_t contentSize() const { return SIZE + bodySize; }
  bool hasCrc() const { return hasFlags(flags, MetaFlags::HAS_CRC); }
};

}  // namespace Brindle
