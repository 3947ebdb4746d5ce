#pragma once

#include <utility>
#include <vector>

#include "foundation/crc32.h"
#include "serialization/serializer.h"
#include "tests/support/bytes.h"

namespace Brindle {

// CRC-32/JAMCRC.
inline uint32 jam(const std::string& in) {
  return CRC32::crc(view(in).data, in.size(), CRC32::POLY);
}

inline FieldValue record(DataMap map) {
  return std::make_shared<DataMap>(std::move(map));
}
template <class T>
FieldValue array(std::initializer_list<T> elements) {
  auto made = std::make_shared<gs::container<T>>();
  made->reserve(elements.size());
  for (const T& element : elements) made->emplace(element);
  return made;
}

// The schema "in" with the one field "n": a record if its schema is given, else
// uint8.
inline std::shared_ptr<Meta> innerMeta(std::shared_ptr<Meta> nested = nullptr) {
  auto meta = std::make_shared<Meta>("in");
  const FieldType type = nested ? FieldType::DATA_MAP : FieldType::UINT8;
  meta->addField("n", type, false, {}, std::move(nested));
  return meta;
}

// A field for values of the alternative `index`. Enums are off = 0 and on = 1.
inline MetaField fieldFor(size_t index) {
  MetaField field;
  field.name = Name(SafeString("f").appendNumber(index));
  field.type = FieldType(index % FIELD_TYPE_COUNT);
  if (index >= FIELD_TYPE_COUNT) field.flags = FieldFlags::REPEATED;
  if (field.type == FieldType::ENUM) {
    field.enumMapping = {{"off", 0}, {"on", 1}};
  }
  if (field.type == FieldType::DATA_MAP) field.meta = innerMeta();
  return field;
}

// One value of each alternative in turn, its encoding, and the bytes that its
// checksum covers.
struct Sample {
  FieldValue value;
  const char* encoding;
  const char* content;
};
inline std::vector<Sample> samples() {
  const DataMap seven{{"n", uint8{7}}};  // its checksum is 9422153C
  return {
      {int8{-2}, "FE", "FE"},
      {int16{-1}, "01", "FF FF"},
      {int32{-300}, "D7 04", "D4 FE FF FF"},  // 599 = 4 * 128 + 0x57
      {int64{-65}, "81 01", "BF FF FF FF FF FF FF FF"},
      {uint8{200}, "C8", "C8"},
      {uint16{300}, "AC 02", "2C 01"},
      {uint32{UINT32_MAX}, "FF FF FF FF 0F", "FF FF FF FF"},
      {uint64{1} << 42, "80 80 80 80 80 80 01", "00 00 00 00 00 04 00 00"},
      {1.5F, "00 00 C0 3F", "00 00 C0 3F"},
      {std::make_shared<SafeString>("abc"), "03 61 62 63", "61 62 63"},
      {EnumType{1}, "01", "01"},
      {BoolType{1}, "01", "01"},
      {record(seven), "05 0A 00 02 00 07", "6E D1 85 99 B3"},
      {array<int8>({1, -1}), "02 01 FF", "01 FF"},
      {array<int16>({INT16_MIN, 1}), "02 FF FF 03 02", "00 80 01 00"},
      {array<int32>({INT32_MIN}), "01 FF FF FF FF 0F", "00 00 00 80"},
      {array<int64>({INT64_MIN}), "01 FF FF FF FF FF FF FF FF FF 01",
       "00 00 00 00 00 00 00 80"},
      {array<uint8>({0, 255}), "02 00 FF", "00 FF"},
      {array<uint16>({127, 128}), "02 7F 80 01", "7F 00 80 00"},
      {array<uint32>({16384}), "01 80 80 01", "00 40 00 00"},
      {array<uint64>({UINT64_MAX}), "01 FF FF FF FF FF FF FF FF FF 01",
       "FF FF FF FF FF FF FF FF"},
      {array<float>({-2, 1}), "02 00 00 00 C0 00 00 80 3F",
       "00 00 00 C0 00 00 80 3F"},
      {array<SafeString>({"", "x"}), "02 00 01 78", "78"},
      {array<EnumType>({{0}, {1}}), "02 00 01", "00 01"},
      {array<BoolType>({{1}, {0}}), "02 01 00", "01 00"},
      {array<DataMap>({seven, seven}), "02 05 0A 00 02 00 07 05 0A 00 02 00 07",
       "3C 15 22 94 3C 15 22 94"}};
}

// A field for each sample, "f0" to "f25", then some of them again as constants.
inline Meta sampleMeta() {
  Meta meta("sample");
  for (size_t i = 0; i < 26; ++i) {
    MetaField f = fieldFor(i);
    meta.addField(f.name, f.flags, f.type, std::move(f.enumMapping), f.meta,
                  {});
  }
  for (size_t i : {2u, 5u, 8u, 9u, 10u, 11u, 19u, 22u, 23u, 24u}) {
    MetaField f = fieldFor(i);
    meta.addMetaField(SafeString(f.name.text()).append("k"), f.type,
                      samples()[i].value, f.isRepeated(),
                      std::move(f.enumMapping));
  }
  return meta;
}
inline DataMap sampleRecord() {
  DataMap map;
  for (const Sample& s : samples()) {
    map.emplace(fieldFor(s.value.index()).name, s.value);
  }
  return map;
}

}  // namespace Brindle
