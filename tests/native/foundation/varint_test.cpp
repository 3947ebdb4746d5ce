#include "foundation/varint.h"

#include "tests/support/bytes.h"

// The value, and behind it how many bytes it took.
static std::string decoded(const std::string& in) {
  size_t consumed = 99;
  const uint64 value = Varint::decode(bytes(fromHex(in)), &consumed);
  return std::to_string(value) + '/' + std::to_string(consumed);
}

TEST(Varint, EncodesEveryWidthAndItsNeighbour) {
  std::string most = "7F";      // 2^7k - 1: k - 1 bytes FF, then 7F
  std::string least = "80 01";  // 2^7k: k bytes 80, then 01
  for (unsigned k = 1; k <= 9; ++k) {
    const uint64 limit = uint64{1} << 7 * k;
    EXPECT_EQ(hex(Varint::encode(limit - 1)), most);
    EXPECT_EQ(hex(Varint::encode(limit)), least);
    most = "FF " + most;
    least = "80 " + least;
  }
  EXPECT_EQ(hex(Varint::encode(UINT64_MAX)), "FF FF FF FF FF FF FF FF FF 01");
}

TEST(Varint, DecodesWhatThereIsWithoutReadingOn) {
  const std::string nine = "FF FF FF FF FF FF FF FF FF ";
  EXPECT_EQ(decoded(""), "0/0");
  EXPECT_EQ(decoded("AC 82"), "300/2");  // cut off: the bits seen so far
  EXPECT_EQ(decoded("80 00 55"), "0/2");
  EXPECT_EQ(decoded(nine), "9223372036854775807/9");
  EXPECT_EQ(decoded(nine + "01 55"), "18446744073709551615/10");
  EXPECT_EQ(decoded(nine + "7E"), "9223372036854775807/10");
  EXPECT_EQ(decoded(nine + "FF 01"), "0/10");
}
