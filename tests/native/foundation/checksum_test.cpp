#include "foundation/crc16.h"
#include "foundation/crc32.h"
#include "foundation/crc8.h"
#include "foundation/xor.h"
#include "tests/support/bytes.h"

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
