#include "schema/named_list.h"

#include "tests/support/bytes.h"

using namespace Brindle;

struct Row : Named {
  int number = 0;
};

// Long enough for the index, with every name twice and one that has no buffer.
TEST(NamedList, FindsWhatAWalkWouldFind) {
  NamedList<Row> list;
  list.append({SafeString(), -1});
  for (int i = 0; i < 200; ++i) {
    list.append({SafeString("r").appendNumber(i % 100), i});
  }
  const auto check = [](const NamedList<Row>& rows) {
    for (const Row& row : rows.list()) {
      const auto* walked = rows.list().find([&](const Row& other) {
        return other.name.text() == row.name.text();
      });
      EXPECT_EQ(rows.find(row.name), walked) << row.number;
    }
    EXPECT_EQ(rows.find("r100"), nullptr);
    EXPECT_EQ(rows.find(""), nullptr);
  };
  check(list);
  for (const char* name : {"r0", "r99", "r0"}) list.remove(list.find(name));
  check(list);
  list.append({"r99", 200});  // the index starts anew
  check(list);
  NamedList<Row> copy(list);
  list.clear();
  EXPECT_EQ(list.find("r1"), nullptr);
  check(copy);
  copy.append({"last", 0});
  list = std::move(copy);
  list.append({"more", 0});
  check(list);
  list = NamedList<Row>();
  EXPECT_EQ(list.find("r1"), nullptr);
}
