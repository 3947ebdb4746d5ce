#include "foundation/buffer.h"

#include <memory>

#include "tests/support/bytes.h"

using namespace Brindle;

TEST(Container, GrowsExactlyAndDestroysWhatIsInUse) {
  const auto token = std::make_shared<int>(7);
  gs::container<std::shared_ptr<int>> first;
  first.reserve(5);
  first.emplace(token);
  first.reserve(6);
  EXPECT_EQ(first.capacity, 6u);
  auto second = std::move(first);
  EXPECT_EQ(first.capacity + first.size, 0u);
  EXPECT_EQ(token.use_count(), 2);
  second = {};
  EXPECT_EQ(token.use_count(), 1);
  gs::container<int> plain;
  const int numbers[] = {1, 2, 3};
  plain.assign(numbers, 3);
  plain.assign(numbers + 1, 2);
  EXPECT_EQ(plain[0] * 10 + plain[1], 23);
  EXPECT_EQ(plain.capacity, 3u);
  plain.assign(numbers, 0);
  EXPECT_EQ(plain.capacity, 0u);
}

TEST(Buffer, GrowsToExactlyTheNeedAndIsReadNoFurther) {
  gs::container<uint8> buf;
  EXPECT_TRUE(appendToBuffer(buf, nullptr, 0));
  EXPECT_FALSE(appendToBuffer(buf, nullptr, 1));
  EXPECT_TRUE(appendToBuffer(buf, "abc", 3) && appendToBuffer(buf, "de", 2));
  EXPECT_EQ(buf.capacity, 5u);
  EXPECT_EQ(hex(buf), "61 62 63 64 65");
  char out[3] = "";
  size_t offset = 3;
  // A length near the top of the range must not wrap past the bounds check.
  for (size_t n : {size_t{3}, SIZE_MAX - 2, SIZE_MAX}) {
    EXPECT_FALSE(extractFromBuffer(buf, offset, out, n)) << n;
  }
  EXPECT_STREQ(out, "");
  EXPECT_TRUE(extractFromBuffer(buf, offset, out, 2));
  EXPECT_STREQ(out, "de");
  EXPECT_TRUE(extractFromBuffer(buf, offset, nullptr, 0));
  EXPECT_EQ(offset, 5u);
}
