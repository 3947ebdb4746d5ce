#include "schema/named_list.h"

#include "tests/support/bytes.h"

using namespace Brindle;

struct Row : Named {
  int number = 0;
};

// As long as each kind of search takes, with most names twice and one that has
// no buffer.
TEST(NamedList, FindsWhatAWalkWouldFind) {
  NamedList<Row> list;
  list.append({SafeString(), -1});
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
  for (int i = 0; i < 200; ++i) {
    list.append({SafeString("r").appendNumber(i % 100), i});
    if (i % 3 == 0) list.extendIndex();  // else the last ones are walked
    check(list);
  }
  for (const char* name : {"r0", "r99", "r0"}) list.remove(list.find(name));
  list.extendIndex();
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
