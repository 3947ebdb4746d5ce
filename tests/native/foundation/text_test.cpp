#include "foundation/text.h"

#include <fcntl.h>
#include <unistd.h>

#include <chrono>
#include <climits>
#include <csignal>
#include <thread>

#include "tests/support/bytes.h"

TEST(Text, ConvertsNumbersAndBoundsWhatItReads) {
  char* end = nullptr;
  EXPECT_EQ(StrToFixed("-0.995", 2, nullptr), -99);
  EXPECT_EQ(StrToFixed("-0.995", 2, &end), -100);
  EXPECT_EQ(StrToFixed("1.24999x", 1, &end), 12);
  EXPECT_STREQ(end, "x");
  EXPECT_EQ(StrToFixed("7", 3, &end), 7000);
  SafeString text;
  appendFixed(appendFixed(text, -5, 2), INT_MIN, 3);
  EXPECT_STREQ(text, "-0.05-2147483.648");
  uint8 out[] = {0xEE, 0xEE};
  EXPECT_FALSE(convertHexStringToArray("0a1", out, 2));  // an odd digit
  EXPECT_EQ(hex({out, 2}), "0A 00");
  EXPECT_TRUE(convertHexStringToArray("0aF1ff", out, 2));
  EXPECT_EQ(hex({out, 2}), "0A F1");
  const std::string digits = std::string(21, '0') + "77";
  EXPECT_EQ(strntol(digits.c_str(), 22, nullptr, 8), 7);
  EXPECT_EQ(strntol(digits.c_str(), 23, nullptr, 8), 0);
  EXPECT_EQ(strntol(("   " + digits).c_str(), 25, nullptr, 8), 7);
  EXPECT_EQ(gs::strnstr("abcabc", "ca", 3), nullptr);
  EXPECT_STREQ(gs::strnstr("abcabc", "ca", 4), "cabc");
}

TEST(Text, ComparesInAsciiAndUnquotes) {
  EXPECT_TRUE(isEqualUncased("aB{", "Ab{"));
  EXPECT_FALSE(isEqualUncased("a[", "a{"));  // apart by the bit of the case
  EXPECT_FALSE(isEqualUncased("ab", "abc"));
  EXPECT_TRUE(isPrefixUncased("content-type", "x", "CONTENT"));
  EXPECT_FALSE(isPrefixUncased("con", "CONTENT"));
  char quoted[] = R"("say \"hi\"")";
  removeSpecSymb(quoted);
  EXPECT_STREQ(quoted, R"(say "hi")");
}

TEST(Diagnostics, PrintsWholeLinesInTheOrderOfTheProgram) {
  for (size_t n : {0u, 510u, 511u, 512u, 513u, 100000u}) {
    const std::string text(n, 'x');
    const auto call = [&] {
      std::printf("before ");
      pqpr("%s", text.c_str());
      return "after";
    };
    EXPECT_EQ(outcomeOf(call), "before " + text + "\nafter");
  }
}

TEST(Diagnostics, GiveUpOnAClosedPipe) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  close(ends[0]);
  std::signal(SIGPIPE, SIG_IGN);
  FILE* closed = fdopen(ends[1], "w");
  printTo(closed, "lost");
  EXPECT_EQ(std::fclose(closed), 0);
}

TEST(Diagnostics, WaitForAFullNonBlockingPipe) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  fcntl(ends[1], F_SETFL, O_NONBLOCK);
  std::string sent;
  while (write(ends[1], "-", 1) == 1) sent += '-';
  std::fflush(stdout);
  const int saved = dup(STDOUT_FILENO);
  dup2(ends[1], STDOUT_FILENO);
  close(ends[1]);
  const std::string line(200000, 'x');
  std::thread writer([&] {
    pqpr("%s", line.c_str());
    dup2(saved, STDOUT_FILENO);
    close(saved);
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  std::string received;
  for (char byte; read(ends[0], &byte, 1) == 1;) received += byte;
  writer.join();
  close(ends[0]);
  EXPECT_TRUE(received == sent + line + '\n');
}
