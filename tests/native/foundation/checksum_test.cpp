#include "foundation/crc16.h"
#include "foundation/crc32.h"
#include "foundation/crc8.h"
#include "foundation/crc_definition.h"
#include "foundation/crc_fold.h"
#include "foundation/processor.h"
#include "foundation/xor.h"
#include "tests/support/bytes.h"
#include "tests/support/guarded.h"

// The check values of the published catalogue, over "123456789".
TEST(Checksum, MatchesTheCatalogueInAnyTwoPieces) {
  const std::string in = "123456789";
  for (size_t n = 0; n <= 9; ++n) {
    const auto a = bytes(in.substr(0, n));
    const auto b = bytes(in.substr(n));
    EXPECT_EQ(CRC8::crc(CRC8::crc(0xFF, a.data, n), b.data, b.size), 0xD0);
    EXPECT_EQ(CRC8::atoll(CRC8::atoll(0, a.data, n), b.data, b.size), 0xBC);
    EXPECT_EQ(CRC16::crc(CRC16::crc(a.data, n), b.data, b.size), 0x4B37);
    EXPECT_EQ(XOR::xor8(a.data, n) ^ XOR::xor8(b.data, b.size), '1');
    const uint32 jamcrc = CRC32::crc(a.data, n, CRC32::POLY);
    EXPECT_EQ(CRC32::crc(jamcrc, b.data, b.size, CRC32::POLY), 0x340BC6D9u);
  }
  EXPECT_EQ(CRC8::crc(bytes(in).data, 9), 0x2F);  // CRC-8/ROHC, inverted
  // Another polynomial: CRC-32C, which is inverted too.
  EXPECT_EQ(~CRC32::crc(bytes(in).data, 9, 0x82F63B78), 0xE3069283u);
  const uint32 words[] = {0xF0000001, 0x0F000002, 0x00F00004};
  EXPECT_EQ(XOR::xor32(words, 3), 0xFFF00007u);
  EXPECT_EQ(XOR::xor32(nullptr, 5), 0u);
  EXPECT_EQ(CRC16::crc(nullptr, 5), 0xFFFF);
}

// All lengths up to a few rounds of the longest stride, each at every distance
// from memory that cannot be read, and in two pieces.
TEST(Checksum, IsWhatTheDefinitionGivesAtAnyLengthAndAlignment) {
  const GuardedBytes memory;
  const auto check = [](const uint8* data, size_t n, uint32 seed) {
    const auto narrow = static_cast<uint16>(seed);
    const uint32 crc32 = crcByDefinition(seed, data, n, CRC32::POLY);
    const uint32 crc16 = crcByDefinition(narrow, data, n, CRC16::POLY);
    const uint32 first = CRC32::crc(seed, data, n / 3, CRC32::POLY);
    EXPECT_EQ(CRC32::crc(first, data + n / 3, n - n / 3, CRC32::POLY), crc32);
    EXPECT_EQ(CRC32::crc(seed, data, n, CRC32::POLY), crc32);
    EXPECT_EQ(CRC16::crc(narrow, data, n), crc16);
    if (!gs::multipliesCarryless()) return;
    EXPECT_EQ(gs::foldCrc32(seed, data, n), crc32);
    EXPECT_EQ(gs::foldCrc16(narrow, data, n), crc16);
  };
  for (size_t n = 0; n <= 300; ++n) {
    for (size_t rest = 0; rest < 16; ++rest) {
      SCOPED_TRACE(testing::Message() << n << " bytes, " << rest << " after");
      check(memory.end() - rest - n, n, static_cast<uint32>(0x9E3779B9 * n));
    }
  }
  check(memory.end() - 65537, 65537, 0xFFFFFFFF);
}
