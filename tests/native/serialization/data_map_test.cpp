#include "tests/support/sample.h"

using namespace Brindle;

TEST(DataMap, KeepsOrderAndDuplicates) {
  const auto content = [](const DataMap& map) {
    std::ostringstream out;
    for (const auto* node = map.begin(); node != map.end(); node = node->next) {
      out << node->value.name.c_str() << *node->value.value.get<int32>();
    }
    return out.str();
  };
  DataMap map{{"a", 1}, {"b", 2}, {"a", 3}};
  EXPECT_EQ(map["A"], nullptr);
  map.insert_or_assign("a", 4);  // the first one, in place
  map.insert_or_assign("c", 5);
  map.emplace("b", 6);
  EXPECT_EQ(content(map), "a4b2a3c5b6");
  map.erase("b");
  map.erase("none");
  EXPECT_EQ(content(map), "a4a3c5b6");
  map.erase("b");  // the tail
  map.erase("a");  // the head
  map.emplace("d", 7);
  EXPECT_EQ(content(map), "a3c5d7");
  SafeString zero;
  zero.setBytes("c\0x", 3);
  EXPECT_NE(map[zero], nullptr);  // compared up to the zero byte
  const DataMap copy(map);
  map.clear();
  EXPECT_EQ(content(map) + '|' + content(copy), "|a3c5d7");
}
