#include "foundation/processor.h"
#include "foundation/sha256.h"
#include "foundation/sha256_blocks.h"
#include "foundation/uuid.h"
#include "tests/support/bytes.h"
#include "tests/support/guarded.h"

// Messages of 0 to 130 bytes, 00 01 02 and so on. The digest of all their
// digests was computed with Python's hashlib.
TEST(Sha256, PadsEveryLengthAndIgnoresWhatComesTooEarlyOrLate) {
  std::string message;
  Sha256 all;
  all.update("x", 1);  // before init()
  all.init();
  for (size_t n = 0; n <= 130; ++n) {
    Sha256 one(message.data(), n);
    one.update("x", 1);  // after the digest was taken
    all.update(one.hash(), Sha256::SIZE);
    message.push_back(static_cast<char>(n));
  }
  EXPECT_STREQ(Sha256().toString(), std::string(64, '0').c_str());
  EXPECT_STREQ(
      all.toHexString(),
      "E5BBBECD60C3632A3455F465BFD8B079C30EF608D2BCC34227F4E5573029020E");
  all.init();
  EXPECT_TRUE(all == Sha256("", 0));
}

// Blocks that end, one time in sixteen, where memory can no longer be read.
TEST(Sha256, TakesBlocksTheSameWayByInstructionsAndByDefinition) {
  if (!gs::hasSha256()) GTEST_SKIP() << "no such instructions";
  const GuardedBytes memory;
  gs::Sha256Words slow = {0x80000000, 1, 2, 3, 4, 5, 6, 0xFFFFFFFF};
  gs::Sha256Words fast = slow;
  for (size_t n = 0; n < 100; ++n) {
    const uint8* data = memory.end() - 64 * n - n % 16;
    gs::sha256ByDefinition(slow, data, n);
    gs::sha256ByInstructions(fast, data, n);
    EXPECT_EQ(fast, slow) << n << " blocks";
  }
}

TEST(Uuid, ParsesItsTextFormAsFarAsItIsGood) {
  const auto parsed = [](const std::string& text) {
    return std::string(Uuid(SafeString(text.c_str())).toString());
  };
  const std::string good = "00112233-4455-6677-8899-AABBCCDDEEFF";
  const std::string none = "00000000-0000-0000-0000-000000000000";
  EXPECT_EQ(parsed("00112233x4455x6677x8899xaabbccddeeff"), good);
  EXPECT_EQ(parsed(good.substr(1)), none);
  EXPECT_EQ(parsed("0011223g" + good.substr(8)), "001122" + none.substr(6));
  EXPECT_EQ(parsed(good.substr(0, 34) + "-f"), good.substr(0, 34) + "00");
}

TEST(Uuid, MakesMarkedLabelsAndCarriesNumbers) {
  const Uuid made = Uuid::random();
  EXPECT_STREQ(SafeString(made.toString()).cut(4), "A55A");
  EXPECT_FALSE(made == Uuid::random());
  EXPECT_STREQ(Uuid(0x01020304u).toString(),
               "04030201-0000-0000-0000-000000000000");
  EXPECT_EQ(Uuid(0x01020304u).toU32(), 0x01020304u);
}
