#include "tests/support/sample.h"

using namespace Brindle;

// What is printed, then the packet.
static std::string written(const Meta& meta, const DataMap& map) {
  return outcomeOf([&] { return hex(Serializer::serialize(meta, map, 0)); });
}

// The same for a record that is read first.
static std::string rewritten(const Meta& meta, const std::string& in,
                             const uint16* expected = nullptr) {
  return outcomeOf([&] {
    const auto exact = bytes(fromHex(in));
    const DataMap map = Serializer::deserialize(meta, exact, 0, expected);
    return map.empty() ? "" : hex(Serializer::serialize(meta, map, 0));
  });
}

TEST(Packet, HoldsTheEntriesInTheOrderOfTheRecord) {
  const Meta meta = sampleMeta();
  std::string packet = "0A 00 8E 01";  // 142 bytes
  for (size_t i = 0; i < 26; ++i) {
    packet += ' ' + hex(view(le(i, 1))) + ' ' + samples()[i].encoding;
  }
  EXPECT_EQ(rewritten(meta, packet + " 55 55"), packet);
  EXPECT_EQ(written(meta, {{"f4", uint8{5}}, {"f0", int8{6}}}),
            "0A 00 04 04 05 00 06");
}

TEST(Packet, SaysWhyItCannotWrite) {
  const Meta meta = sampleMeta();
  EXPECT_EQ(written(meta, {{"F0", int8{1}}}), "Wrong field name: F0\n");
  EXPECT_EQ(written(meta, {{"f2k", int32{-300}}}),
            "The field has a meta flag, it is not transmitted in the data\n");
  const auto withCrc = [&] {
    const DataMap bad{{"f12", record({{"x", uint8{1}}})}};
    return hex(Serializer::serializeWithCrc(meta, bad, nullptr));
  };
  EXPECT_EQ(outcomeOf(withCrc),
            "Wrong field name: x\nFailed to serialize field (f12)\n"
            "Buffer too small\n");
}

TEST(Packet, ReadsByTheRulesOfTheFormat) {
  const Meta meta = *innerMeta();
  const auto read = [&](const std::string& in) { return rewritten(meta, in); };
  const std::string seven = "0A 00 02 00 07";
  const std::string none = "deserialize: No data available (in)\n";
  EXPECT_EQ(read("0A FE 02 00 07"), seven);  // other flags are ignored
  EXPECT_EQ(read("0A 00 00"), none);
  EXPECT_EQ(read("0A 00"), "Buffer too small\n");
  EXPECT_EQ(read("0B 00 02 00 07"), "Unsupported version\n");
  EXPECT_EQ(read("0A 00 03 00 07"), "Invalid data size\n");
  EXPECT_EQ(read("0A 00 04 00 07 00 08"), "0A 00 04 00 07 00 08");  // twice
  EXPECT_EQ(read("0A 00 02 01 07"), "Wrong field ID: 1\n");
  EXPECT_EQ(read("0A 00 04 80 80 04 07"), seven);  // 65536 is 0 in 16 bits
  EXPECT_EQ(read("0A 00 01 00"), "Failed to deserialize field (n)\n");
  EXPECT_EQ(read("0A 00 01 00 07"), seven);  // the value lies past the body
  // Lengths are counted in 16 bits: 65538 is 2, 65531 and 5 more are 0.
  EXPECT_EQ(read("0A 00 82 80 04 00 07"), seven);
  EXPECT_EQ(read("0A 00 FB FF 03 00 07"), none);
  EXPECT_EQ(read("0A 00 FF FF FF FF FF FF FF FF FF 01 00 07"), none);
  EXPECT_EQ(read("0A 00 FA FF 03"), "Invalid data size\n");
}

TEST(Packet, ChecksItsTrailerOrAnExpectedCrc) {
  const Meta meta = *innerMeta();
  const uint16 plainCrc = 0x035C;  // of 0A 00 02 00 07, computed bit by bit
  const uint16 crc = 0xFF5D;       // of 0A 01 02 00 07
  const std::string plain = "0A 00 02 00 07";
  const std::string good = "0A 01 02 00 07 5D FF";
  const std::string bad = "0A 01 02 00 07 5D FE";
  const std::string warning = "Data has CRC, but input CRC16 mismatch\n";
  uint16 stored = 0;
  const DataMap seven{{"n", uint8{7}}};
  EXPECT_EQ(hex(Serializer::serializeWithCrc(meta, seven, &stored)), good);
  EXPECT_EQ(stored, crc);
  EXPECT_EQ(rewritten(meta, good, &crc), plain);
  EXPECT_EQ(rewritten(meta, good, &plainCrc), warning + plain);
  EXPECT_EQ(rewritten(meta, bad, &crc), warning + "CRC16 mismatch\n");
  EXPECT_EQ(rewritten(meta, good.substr(0, 17)),
            "Buffer too small for CRC16\n");
  EXPECT_EQ(rewritten(meta, plain + " 55", &plainCrc), plain);
  EXPECT_EQ(rewritten(meta, plain, &crc), "CRC16 mismatch\n");
}

TEST(Packet, NestsSixRecords) {
  auto meta = innerMeta();
  DataMap map{{"n", uint8{7}}};
  std::string packet = "0A 00 02 00 07";
  std::string failures = "Recursion limit reached\n";
  for (int levels = 2; levels <= 7; ++levels) {
    meta = innerMeta(meta);
    map = {{"n", record(map)}};
    const size_t size = (packet.size() + 1) / 3;
    packet = "0A 00 " + hex(view(le(size + 2, 1))) + " 00 " +
             hex(view(le(size, 1))) + ' ' + packet;
    failures += "Failed to deserialize field (n)\n";
    EXPECT_EQ(rewritten(*meta, packet), levels < 7 ? packet : failures);
  }
  EXPECT_EQ(written(*meta, map).substr(0, 24), "Recursion limit reached\n");
}

// A varint V, then V and 2 more bytes, counted in 16 bits; and the varint that
// follows the first one.
TEST(Packet, ScansForLengthPrefixedRuns) {
  const std::tuple<std::string, std::string, uint32> cases[] = {
      {"80 01", "", 0xFFFFFFFF},
      {"05 AC 02", "", 300},
      {"7F 00 AA BB", "00 AA BB", 0},
      {"FD FF 03 01", "FD FF", 1}};  // 65533 + 3 + 2 is 2
  for (const auto& [in, packet, id] : cases) {
    const auto exact = bytes(fromHex(in));
    EXPECT_EQ(hex(Serializer::getPacket(exact, 0)), packet) << in;
    EXPECT_EQ(Serializer::getMetaIdFromPacket(exact), id) << in;
  }
}
