#include "foundation/safe_string.h"

#include <random>

#include "tests/support/bytes.h"

enum { PREPEND = 0, FORCE_APPEND = 1, OPERATIONS = 10 };

// Runs one operation and says what it makes of `was` when there is room. `arg`
// may lie inside `s`.
static std::string run(size_t operation, SafeString& s, const std::string& was,
                       const char* arg, size_t n) {
  const std::string text = arg;
  const size_t left = was.size() - std::min(n, was.size());
  if (operation == PREPEND) return s.prepend(arg), text + was;
  if (operation == FORCE_APPEND) return s.forceAppend('!'), was + '!';
  if (operation == 2) return s.append(arg), was + text;
  if (operation == 3) return s.append(arg, 2), was + text.substr(0, 2);
  if (operation == 4) return s = arg, text;
  if (operation == 5) return s.aformat("%s%d", arg, -7), was + text + "-7";
  if (operation == 6) return s.format("%s7", arg), text + '7';
  if (operation == 7) return s.trimLeft(n), was.substr(was.size() - left);
  if (operation == 8) return s.trimRight(n), was.substr(0, left);
  return s.cut(n), was.substr(0, n);
}

// Random operations on a borrowed, a fixed and a growable string.
TEST(SafeString, BehavesLikeATextWithLimitedRoom) {
  char buffer[8] = "a";
  SafeString strings[] = {{buffer, 8}, {8, "a", false}, {"a"}};
  std::mt19937 random(1);
  for (SafeString& s : strings) {
    const bool grows = s.size() == 32;
    size_t capacity = s.size();
    std::string was = "a";
    for (int round = 0; round < 20000; ++round) {
      const size_t n = random() % 9;
      const bool inside = random() % 4 == 0 && n <= was.size();
      const std::string given = std::string("ab cabab").substr(random() % 9);
      const size_t operation = random() % OPERATIONS;
      SCOPED_TRACE(testing::Message() << operation << '|' << was << '|' << n);
      std::string wanted =
          run(operation, s, was, inside ? s.data(n) : given.c_str(), n);
      const bool fits = grows || wanted.size() < capacity;
      if (!fits) {  // all or nothing, but for two
        wanted = operation == PREPEND        ? wanted.substr(0, 7)
                 : operation == FORCE_APPEND ? was.substr(0, 6) + '!'
                                             : was;
      }
      if (wanted.size() >= capacity) capacity = (wanted.size() + 32) / 32 * 32;
      ASSERT_EQ(s.c_str(), wanted);
      ASSERT_EQ(s.length(), wanted.size());
      ASSERT_EQ(s.size(), capacity);
      ASSERT_EQ(s.wasLastOpSuccessful(), fits || operation == FORCE_APPEND);
      was = wanted.size() > 150 ? s = "a", "a" : wanted;
    }
  }
  EXPECT_EQ(strings[0].raw(), buffer);
}

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
}
