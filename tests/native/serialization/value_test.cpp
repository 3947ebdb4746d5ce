#include "tests/support/sample.h"

using namespace Brindle;

// What is printed, then the encoding or "refused".
static std::string written(const MetaField& field, const FieldValue& value,
                           uint8 depth = 0) {
  return outcomeOf([&] {
    gs::container<uint8> out;
    const bool ok = Serializer::serializeField(field, value, out, depth);
    return ok ? hex(out) : "refused";
  });
}

// The same for a value that is read first.
static std::string rewritten(const MetaField& field, const std::string& in,
                             uint8 depth = 0) {
  return outcomeOf([&] {
    FieldValue value;
    size_t offset = 0;
    const auto exact = bytes(fromHex(in));
    gs::container<uint8> out;
    const bool ok =
        Serializer::deserializeField(field, exact, offset, value, depth) &&
        Serializer::serializeField(field, value, out, 0);
    return ok ? hex(out) : "refused";
  });
}
static std::string rewritten(size_t alternative, const std::string& in) {
  return rewritten(fieldFor(alternative), in);
}

TEST(Value, EveryAlternativeHasItsEncodingAndFieldOfItsOwn) {
  for (const auto& [value, encoding, content] : samples()) {
    const size_t own = value.index();
    for (size_t i = 0; i < 26; ++i) {
      // For an enum the name of an entry will do.
      if ((own == 9 && i == 10) || (own == 22 && i == 23)) continue;
      EXPECT_EQ(written(fieldFor(i), value), i == own ? encoding : "refused");
    }
    const std::string whole = encoding;
    EXPECT_EQ(rewritten(own, whole), whole);
    for (size_t n = 0; n < whole.size(); n += 3) {
      const std::string outcome = rewritten(own, whole.substr(0, n));
      // Cut short it fails, unless that is within its last varint.
      const bool within = n != 0 && whole[n - 3] >= '8';
      EXPECT_TRUE(outcome.ends_with("refused") || within) << n;
    }
  }
}

TEST(Value, SaysWhyItCannotWrite) {
  EXPECT_EQ(written(fieldFor(9), std::shared_ptr<SafeString>()), "refused");
  EXPECT_EQ(written(fieldFor(14), ArrayOf<int16>()),
            "Container is null\nrefused");
  EXPECT_EQ(written(fieldFor(25), ArrayOf<DataMap>()), "refused");
  MetaField bare = fieldFor(12);
  bare.meta.reset();
  const std::string why = "Meta field must have a meta\nrefused";
  EXPECT_EQ(written(bare, samples()[12].value), why);
  EXPECT_EQ(rewritten(bare, samples()[12].encoding), why);
  for (const std::string name : {"auto", "ON", "of", ""}) {
    EXPECT_EQ(written(fieldFor(10), std::make_shared<SafeString>(name.c_str())),
              "Invalid ENUM value " + name + " \nEnum off\nEnum on\nrefused");
  }
  EXPECT_EQ(written(fieldFor(23), array<SafeString>({"on"})), "01 01");
  EXPECT_EQ(written(fieldFor(10), EnumType{77}), "4D");  // any code goes
}

// Odd input that is read, and as what.
TEST(Value, ReadsWhatTheFormatLetsPass) {
  EXPECT_EQ(rewritten(5, "F0 A2 04"), "F0 22");  // 70000 becomes 4464
  EXPECT_EQ(rewritten(1, "81 80 04"), "01");     // 65537 becomes 1, that is -1
  EXPECT_EQ(rewritten(9, "83 00 61 00 62"), "03 61 00 62");
  EXPECT_EQ(rewritten(11, "02"), "02");  // a bool is not normalised
  EXPECT_EQ(rewritten(8, "01 00 A0 7F"), "01 00 A0 7F");  // a signalling NaN
  EXPECT_EQ(FieldValue(BoolType{2}).crc(), jam("\2"));
}

// No array but of 16-bit integers and wider may be empty; no count and no
// length reaches past the end, however it wraps.
TEST(Value, RefusesLyingCountsAndLengths) {
  const std::string rest = " 00 00 00 00 00 00 00 00";
  for (size_t type = 0; type < 13; ++type) {
    SCOPED_TRACE(type);
    const bool wide = (type >= 1 && type <= 3) || (type >= 5 && type <= 7);
    EXPECT_EQ(rewritten(13 + type, "00"), wide ? "00" : "refused");
    // 127, 2^61, 2^62 + 1, 2^63 and 2^64 - 1
    for (const std::string count :
         {"7F", "80 80 80 80 80 80 80 80 20", "81 80 80 80 80 80 80 80 40",
          "80 80 80 80 80 80 80 80 80 01", "FF FF FF FF FF FF FF FF FF 01"}) {
      EXPECT_EQ(rewritten(13 + type, count), "refused");
      EXPECT_EQ(rewritten(13 + type, count + rest), "refused");
      if (type != 9 && type != 12) continue;
      EXPECT_EQ(rewritten(type, count + rest), "refused");
      EXPECT_EQ(rewritten(13 + type, "01 " + count + rest), "refused");
    }
  }
}

TEST(Value, SaysWhyItCannotReadOrGoDeeper) {
  MetaField field;
  field.type = FieldType(13);
  EXPECT_EQ(rewritten(field, "00"), "Unsupported field type\nrefused");
  EXPECT_EQ(rewritten(23, "02 00 02"), "Invalid ENUM value for field\nrefused");
  EXPECT_EQ(rewritten(12, "00"), "refused");
  // An empty record is written, but cannot be read back.
  EXPECT_EQ(written(fieldFor(12), record({})), "03 0A 00 00");
  EXPECT_EQ(rewritten(12, "03 0A 00 00"),
            "deserialize: No data available (in)\nrefused");
  const std::string refused = "Recursion limit reached\nrefused";
  EXPECT_EQ(rewritten(fieldFor(4), "01", 5), "01");
  EXPECT_EQ(rewritten(fieldFor(4), "01", 6), refused);
  EXPECT_EQ(written(fieldFor(4), uint8{1}, 5), "01");
  EXPECT_EQ(written(fieldFor(4), uint8{1}, 255), refused);
}
