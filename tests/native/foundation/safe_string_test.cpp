#include "foundation/safe_string.h"

#include "tests/support/bytes.h"

TEST(SafeString, WritesAllOrNothingAndTreatsZeroBytesAsDocumented) {
  SafeString s;
  // A digit count by a logarithm in double would be one too high.
  s.appendNumber(uint64{999999999999999999}).appendNumber(INT64_MIN);
  EXPECT_STREQ(s, "999999999999999999-9223372036854775808");
  const uint8 two[] = {0x01, 0xAB};
  s.format("=").appendHex(two, 2, Endianness::BIG);
  EXPECT_STREQ(s.appendHex(two, 2, Endianness::LITTLE), "=01ABAB01");
  SafeString fixed(6, "abab", false);
  EXPECT_FALSE(fixed.appendNumber(-4).wasLastOpSuccessful());
  EXPECT_FALSE(fixed.appendHex(two, 1, {}).wasLastOpSuccessful());
  EXPECT_FALSE(fixed.replace("a", "xy").wasLastOpSuccessful());
  EXPECT_STREQ(fixed.replace("a", fixed.data(3), 1), "abbb");
  // An embedded zero ends the text of appendArray, but counts in the length of
  // setBytes, where only comparisons stop at it.
  char full[4] = {'a', 'b', 'c', 'd'};
  EXPECT_STREQ(SafeString(full, 4), "abc");
  s = "x";
  EXPECT_EQ(s.appendArray("a\0b", 3).length(), 2u);
  s.setBytes("a\0b", 3);
  EXPECT_EQ(hex(SafeString(s).bytes()), "61 00 62");
  EXPECT_TRUE(s == "a");
  EXPECT_EQ(s.validate(false).length(), 3u);
  EXPECT_EQ(s.validate(true).length(), 1u);
  EXPECT_FALSE(SafeString() == SafeString());  // no buffer, no text
  const char* none = nullptr;
  EXPECT_EQ(SafeString(none).size(), 0u);
}
