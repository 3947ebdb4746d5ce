#include "schema/field_value.h"

#include "tests/support/sample.h"

using namespace Brindle;

TEST(FieldType, HasTheNamesAndSizesOfTheFormat) {
  std::string all;
  for (uint8 code = 0; code < 14; ++code) {
    all += getNameFiledType(FieldType(code));
    all += std::to_string(getFieldSize(FieldType(code))) + ' ';
  }
  EXPECT_EQ(all,
            "int81 int162 int324 int648 uint81 uint162 uint324 uint648 float4 "
            "string0 enum1 bool1 data_map0 unknown0 ");
}

TEST(FieldValue, ChecksumCoversTheContentAndTellsNoneFromEmpty) {
  for (size_t i = 0; i < 26; ++i) {
    const auto [value, encoding, content] = samples()[i];
    EXPECT_EQ(value.index(), i);
    EXPECT_EQ(static_cast<size_t>(getFieldType(value)), i % 13);
    EXPECT_EQ(value.crc(), jam(fromHex(content))) << i;
  }
  EXPECT_EQ(FieldValue(std::shared_ptr<SafeString>()).crc(), 0u);
  EXPECT_EQ(FieldValue(std::shared_ptr<DataMap>()).crc(), 0u);
  EXPECT_EQ(FieldValue(ArrayOf<int16>()).crc(), 0u);
  EXPECT_EQ(record({}).crc(), 0xFFFFFFFFu);
  EXPECT_EQ(array<int16>({}).crc(), 0xFFFFFFFFu);
}
