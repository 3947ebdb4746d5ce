#include "foundation/numeric.h"

#include "tests/support/bytes.h"

TEST(Numeric, ComputesByHand) {
  EXPECT_EQ(linearInt(3, 1, 10, 5, 30), 20);
  EXPECT_EQ(linearInt(-1, 1, 10, 5, 30), 0);
  EXPECT_DOUBLE_EQ(toRadians(90), 1.5707963267948966);
  EXPECT_EQ(normalizeAngle(540.5), -179.5);
  EXPECT_EQ(angleDiff(350, 20), 30);
  EXPECT_EQ(angleDiff(20, 350), -30);
  EXPECT_EQ(lowPass(10, 20, 0.25), 12.5);
  EXPECT_EQ(dcBlock(7, 4, 10, 0.5), 8);
  EXPECT_TRUE(isOdd(-3) && !isOdd(4) && isEven(-4) && !isEven(3));
  uint8 bytes[] = {1, 2, 0xAB};
  swapBuffer(bytes, 3);
  EXPECT_STREQ(hexDump(bytes, 3), "AB0201");
  EXPECT_STREQ(hexDump(bytes, 0), "");
}
