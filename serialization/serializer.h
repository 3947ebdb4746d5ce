#pragma once

#include "schema/meta.h"
#include "serialization/data_map.h"

namespace Brindle {

// Which encoding a value has in a record.
template <class T>
concept NonVarint =
    std::same_as<T, int8> || std::same_as<T, uint8> || std::same_as<T, float> ||
    std::same_as<T, EnumType> || std::same_as<T, BoolType>;
template <class T>
concept UnsignedVarint = std::same_as<T, uint16> || std::same_as<T, uint32> ||
    std::same_as<T, uint64>;
template <class T>
concept SignedVarint =
    std::same_as<T, int16> || std::same_as<T, int32> || std::same_as<T, int64>;

// Turns a record into a self-delimiting data packet, guided by its schema, and
// back. Nothing is kept between calls.
//
// Failures print a line where the cause is known and give an empty container,
// an empty record, null or false. A failed write may leave part of the value at
// the end of `out`, a failed read leaves `offset` where it stopped: the caller
// drops the whole. Running out of memory throws std::bad_alloc.
//
// A data packet (numbers little-endian, nothing padded):
//
//   offset     width   field
//   0          1       version, 10
//   1          1       packet flags; bit 0: a CRC-16 trailer follows
//   2          1..10   L, the length of the body, a varint
//   2 + n      L       body: for each entry of the record, in record order,
//                        varint  the field's index in the schema
//                        n       the value (see value_writer.cpp)
//   2 + n + L  2       CRC-16/MODBUS over all bytes before it, if bit 0 is set
//
// Readers compute 2 + n + L in 16 bits. Constants of the schema are never in a
// packet, and a field that the record lacks is simply absent.
class Serializer {
 public:
  // The packet of `map`; empty on failure. `depth` is 0 for a top-level record.
  static gs::container<uint8> serialize(const Meta& meta, const DataMap& map,
                                        uint8 depth);
  // The same with a trailer, also stored in `crcOut` unless that is null.
  static gs::container<uint8> serializeWithCrc(const Meta& meta,
                                               const DataMap& map,
                                               uint16* crcOut);

  // The record in the packet at the start of `packet`; what follows is ignored.
  // `expectedCrc`, which may be null, is checked for packets without a trailer;
  // one that differs from a trailer is only reported. Running out of memory is
  // a failure like any other.
  static DataMap deserialize(const Meta& meta, const gs::ConstBuf& packet,
                             uint8 depth, const uint16* expectedCrc);
  // The same for callers who have to tell a packet that cannot be read from one
  // that there was no memory for: that throws std::bad_alloc.
  static DataMap deserializeOrThrow(const Meta& meta,
                                    const gs::ConstBuf& packet, uint8 depth,
                                    const uint16* expectedCrc);
  // Reads one packet preceded by its length (a varint) and replaces `out`,
  // which a failure leaves alone. An empty record counts as failure.
  static bool deserializeDataMap(const gs::ConstBuf& buf, size_t& offset,
                                 const Meta& meta, DataMap& out, uint8 depth);

  // Skips the varint at the start and answers the one behind it; 0xFFFFFFFF
  // when there is none.
  static uint32 getMetaIdFromPacket(const gs::ConstBuf& buf);
  // A copy of the first run, at `offset` or later, of a varint V and the V + 2
  // bytes behind it; the length of the whole is computed in 16 bits. Empty if
  // there is none, or if that length is 0.
  static gs::container<uint8> getPacket(const gs::ConstBuf& buf, size_t offset);

  // One value of `field`, which has to be of exactly the field's type, and an
  // array exactly when the field repeats; for enum fields the name of an entry,
  // or names, will do.
  static bool serializeField(const MetaField& field, const FieldValue& value,
                             gs::container<uint8>& out, uint8 depth);
  static bool deserializeField(const MetaField& field, const gs::ConstBuf& buf,
                               size_t& offset, FieldValue& value, uint8 depth);

  // The bytes as they stand.
  template <NonVarint T>
  static bool serializeNonVarint(T value, gs::container<uint8>& out);
  template <NonVarint T>
  static bool serializeNonVarintArray(const ArrayOf<T>& array,
                                      gs::container<uint8>& out);
  // A varint.
  template <UnsignedVarint T>
  static bool serializeUInt(T value, gs::container<uint8>& out);
  template <UnsignedVarint T>
  static bool serializeUIntArray(const ArrayOf<T>& array,
                                 gs::container<uint8>& out);
  // Zigzag at the value's width, then a varint.
  template <SignedVarint T>
  static bool serializeInt(T value, gs::container<uint8>& out);
  template <SignedVarint T>
  static bool serializeIntArray(const ArrayOf<T>& array,
                                gs::container<uint8>& out);
  // The code of the first entry of that name, in one byte.
  static bool serializeStringEnum(const SafeString& name,
                                  const EnumMapping& entries,
                                  gs::container<uint8>& out);

  template <NonVarint T>
  static bool deserializeNonVarint(const gs::ConstBuf& buf, size_t& offset,
                                   T& out);
  // A varint that is longer than the width loses its upper bits.
  template <UnsignedVarint T>
  static bool deserializeUInt(const gs::ConstBuf& buf, size_t& offset, T& out);
  template <SignedVarint T>
  static bool deserializeInt(const gs::ConstBuf& buf, size_t& offset, T& out);
  static bool deserializeSafeString(const gs::ConstBuf& buf, size_t& offset,
                                    SafeString& out);
  // A count (a varint), then as many elements; null on failure. Of these only
  // integer arrays of 16 bits and more may be empty.
  template <NonVarint T>
  static ArrayOf<T> deserializeNonVarintArray(const gs::ConstBuf& buf,
                                              size_t& offset);
  template <UnsignedVarint T>
  static ArrayOf<T> deserializeUIntArray(const gs::ConstBuf& buf,
                                         size_t& offset);
  template <SignedVarint T>
  static ArrayOf<T> deserializeIntArray(const gs::ConstBuf& buf,
                                        size_t& offset);
};

}  // namespace Brindle
