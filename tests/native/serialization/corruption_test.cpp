#include "foundation/crc16.h"
#include "tests/support/sample.h"

using namespace Brindle;

// With the last two bytes made the CRC-16 of the others.
static std::string repaired(std::string in) {
  const size_t n = in.size() - 2;
  return in.replace(n, 2, le(CRC16::crc(view(in).data, n), 2));
}

static std::string flipped(std::string in, size_t bit) {
  in[bit / 8] = static_cast<char>(in[bit / 8] ^ 1 << bit % 8);
  return in;
}

// A block of everything there is, damaged in every place; what is printed over
// it does not matter.
struct Corruption : testing::Test {
  Corruption() { testing::internal::CaptureStdout(); }
  ~Corruption() override { testing::internal::GetCapturedStdout(); }
  const Meta meta = sampleMeta();
  const std::string schema = fromHex(hex(meta.packWithCrc(nullptr)));
  const std::string packet =
      fromHex(hex(Serializer::serializeWithCrc(meta, sampleRecord(), nullptr)));
};

static bool isRead(const std::string& in) {
  return Meta::unpack(bytes(in), 0, nullptr) != nullptr;
}
static bool isRead(const std::string& in, const Meta& meta) {
  return !Serializer::deserialize(meta, bytes(in), 0, nullptr).empty();
}

// Any record that can be read can be written, and read again as the same,
// unless it names a constant.
static void expectRewritable(const Meta& meta, const std::string& in) {
  const DataMap map = Serializer::deserialize(meta, bytes(in), 0, nullptr);
  const auto again = Serializer::serialize(meta, map, 0);
  for (const DataMap::Entry& entry : map.data()) {
    if (meta.field(entry.name)->isMeta()) return;
  }
  EXPECT_EQ(Serializer::deserialize(meta, again, 0, nullptr).crc(), map.crc());
}

TEST_F(Corruption, EveryTruncationIsRefused) {
  for (size_t n = 0; n <= schema.size(); ++n) {
    EXPECT_EQ(isRead(schema.substr(0, n)), n == schema.size()) << n;
  }
  for (size_t n = 0; n <= packet.size(); ++n) {
    EXPECT_EQ(isRead(packet.substr(0, n), meta), n == packet.size()) << n;
  }
}

TEST_F(Corruption, EveryFlippedBitOfASchemaIsRefused) {
  size_t passed = 0;
  for (size_t bit = 0; bit < 8 * schema.size(); ++bit) {
    EXPECT_FALSE(isRead(flipped(schema, bit))) << bit;
    const std::string mended = repaired(flipped(schema, bit));
    if (mended != schema && isRead(mended)) ++passed;
  }
  // Only the body size of a nested schema is not covered: it may shrink, for
  // the fields alone say where the schema ends. Both nested ones say 9, that is
  // two bits each.
  EXPECT_EQ(passed, 4u);
}

TEST_F(Corruption, DamagedRecordsAreRefusedOrRewritten) {
  for (size_t bit = 0; bit < 8 * packet.size(); ++bit) {
    const std::string damaged = flipped(packet, bit);
    EXPECT_EQ(isRead(damaged, meta), bit == 8) << bit;
    expectRewritable(meta, repaired(damaged));
  }
  for (size_t i = 0; i + 2 < packet.size(); ++i) {
    for (const char byte : {'\0', '\x7F', '\x80', '\xFF'}) {
      expectRewritable(meta,
                       repaired(std::string(packet).replace(i, 1, 1, byte)));
    }
  }
}
