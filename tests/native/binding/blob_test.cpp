#include "binding/blob_walker.h"
#include "binding/config_hash.h"
#include "tests/support/sample.h"

using namespace brindle_napi;

// The blocks as "index@offset:size ", then where and why the walk ends.
static std::string walked(const std::string& in) {
  const auto blob = bytes(in);
  BlobWalker walker(blob);
  std::ostringstream out;
  while (walker.next()) {
    out << walker.index() << '@' << walker.offset() << ':'
        << walker.block().size << ' ';
    EXPECT_EQ(walker.block().data, blob.data + walker.blockOffset());
  }
  out << walker.index() << '@' << walker.offset() << ':'
      << static_cast<int>(walker.fault());
  return out.str();
}

TEST(BlobWalker, StepsToTheEndOrTheFirstFault) {
  const std::string two =
      le(32, 2) + std::string(32, 'a') + le(65535, 2) + std::string(65535, 'b');
  const std::string steps = "0@0:32 1@34:65535 2@65571:";
  EXPECT_EQ(walked(""), "0@0:0");
  EXPECT_EQ(walked(two), steps + '0');
  EXPECT_EQ(walked(two + le(0, 2)), steps + '1');
  EXPECT_EQ(walked(two + le(31, 2) + std::string(31, 'c')), steps + '2');
  EXPECT_EQ(walked(two + le(33, 2) + std::string(32, 'c')), steps + '3');
  EXPECT_EQ(walked(two + 'x'), steps + '4');
  EXPECT_FALSE(calcNgConfigHash({}, nullptr));
}
