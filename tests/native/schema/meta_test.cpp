#include "schema/meta.h"

#include <functional>
#include <random>

#include "tests/support/sample.h"

using namespace Brindle;

using std::string_literals::operator""s;

// The bytes that the checksum covers, spelled out after every change.
TEST(Meta, ChecksumFollowsEveryChangeButSetFlag) {
  Meta meta;
  EXPECT_EQ(meta.crc(), jam("\0"s));
  meta.setName("m");
  meta.setFlag(MetaFlags::HAS_CRC, true);
  EXPECT_EQ(meta.crc(), jam("m\0"s));  // stale
  meta.setName("m");
  EXPECT_EQ(meta.crc(), jam("m\1"s));
  meta.setFlags(MetaFlags(0x80));
  std::string all = "m\x80";
  EXPECT_EQ(meta.crc(), jam(all));
  meta.addField("a", FieldType::FLOAT, true);
  EXPECT_EQ(meta.crc(), jam(all += "a\x08\x02"));
  meta.addField("e", FieldType::ENUM, false, {{"x", 9}, {"y", 9}});
  EXPECT_EQ(meta.crc(), jam(all += "e\x0A\0x\x09y\x09"s));
  meta.addMetaField("k", FieldType::UINT16, uint16{5}, true);
  EXPECT_EQ(meta.crc(), jam(all += "k\x05\x03" + le(jam("\5\0"s), 4)));
  const auto inner = innerMeta();
  meta.addField("d", FieldType::DATA_MAP, false, {}, inner);
  inner->setName("other");  // parents are not refreshed
  EXPECT_EQ(meta.crc(), jam(all + "d\x0C\0"s + le(jam("in\0n\x04\0"s), 4)));
  meta.deleteField("d");
  meta.deleteField("d");
  EXPECT_EQ(meta.crc(), jam(all));
}

// As if it were computed anew after every change, whatever went before.
TEST(Meta, ChecksumIsContinuedOnlyOverWhatNobodyCanChange) {
  std::minstd_rand random(1);
  Meta meta;
  std::string name;
  auto inner = innerMeta();
  auto value = std::make_shared<FieldValue>(uint8{1});
  const std::function<void()> changes[] = {
      [&] { meta.setFlag(MetaFlags(1 << random() % 8), true); },
      [&] { inner->setFlags(MetaFlags(random() % 9)); },
      [&] { *value = static_cast<uint8>(random() % 99); },
      [&] { meta.deleteField(name.c_str()); },
      [&] { meta = Meta(meta); },
      [&] { Meta(std::move(meta)).setName(""); },
      [&] {
        MetaField* known = meta.field(name.c_str());
        if (known != nullptr) known->flags = FieldFlags(random() % 9);
      },
      [&] {
        meta.addField(name.c_str(), FieldFlags(1), FieldType::UINT8, {}, {},
                      value);
      },
      [&] { meta.addField(name.c_str(), FieldType::DATA_MAP, 0, {}, inner); }};
  for (int step = 0; step < 4000; ++step) {
    if (step % 16 == 0) meta = Meta("m");
    name = "f" + std::to_string(random() % 20);
    if (random() % 3 == 0) changes[random() % std::size(changes)]();
    const uint64 before = meta.fields().count;
    meta.addField(name.c_str(), FieldType::ENUM, false, {{name.c_str(), 1}});
    if (meta.fields().count == before) continue;
    Meta anew(meta);
    anew.setName(cloneOf(meta.name()));
    ASSERT_EQ(meta.crc(), anew.crc()) << step;
  }
}

TEST(Meta, KnownNamesOnlyGainNewEntriesAndBadFieldsNothing) {
  Meta meta("m");
  meta.addField("e", FieldType::ENUM, false, {{"x", 1}});
  for (int round = 0; round < 2; ++round) {
    EXPECT_TRUE(meta.addField("e", FieldFlags(3), FieldType::ENUM,
                              {{"x", 7}, {"y", 2}, {"y", 3}}, innerMeta(),
                              std::make_shared<FieldValue>(EnumType{2})));
    EXPECT_EQ(meta.crc(), jam("m\0e\x0A\0x\1y\2"s));
  }
  EnumMapping empty;
  EXPECT_TRUE(empty.merge({{"x", 1}}));
  EXPECT_TRUE(empty.hasCode(1) && empty.find("x") != nullptr);
  const auto refused = [&](const char* name, FieldType type) {
    return outcomeOf(
        [&] { return meta.addField(name, type, false) ? "added" : ""; });
  };
  EXPECT_EQ(refused("e", FieldType::ENUM),  // although it exists as such
            "ENUM field must have a mapping of possible values.\n");
  EXPECT_EQ(refused("d", FieldType::DATA_MAP), "Meta field must have a meta\n");
  EXPECT_EQ(refused("e", FieldType::UINT8),
            "Field already exists with different type\n");
  EXPECT_EQ(meta.crc(), jam("m\0e\x0A\0x\1y\2"s));
}

TEST(Meta, CopiesShareNestedSchemasAndConstantsOnly) {
  const Meta meta = sampleMeta();
  Meta copy;
  copy = meta;
  EXPECT_TRUE(copy == meta);
  EXPECT_EQ(copy.field("f12")->meta, meta.field("f12")->meta);
  EXPECT_EQ(copy.field("f9k")->value, meta.field("f9k")->value);
  copy.addField("f10", FieldType::ENUM, false, {{"new", 3}});
  EXPECT_EQ(meta.field("f10")->enumMapping.count(), 2u);
  copy.deleteField("f0");  // the others keep their index
  EXPECT_EQ(copy.field("f1")->index, 1);
  copy.addField("new", FieldType::INT8, false);  // a second field of index 35
  EXPECT_EQ(copy.field("new")->index, 35);
  std::pair<FieldType, bool> type;
  EXPECT_FALSE(copy.getFieldType("f0", type));
  EXPECT_TRUE(copy.getFieldType("f15", type));
  EXPECT_EQ(type, std::make_pair(FieldType::INT32, true));
  FieldValue value;
  EXPECT_FALSE(copy.getMetaValue("f9", value));  // no constant
}
