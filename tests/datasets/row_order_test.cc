#include "datasets/row_order.h"

#include <algorithm>
#include <cstdint>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace veld::datasets_internal {
namespace {

// Rows are only compared, never looked into, so numbers stand in for them.
xmlNodePtr Row(uintptr_t n) { return reinterpret_cast<xmlNodePtr>(n * 16); }

// Random pushes, removals anywhere, replacements and reads by position, each
// checked against a plain vector.
TEST(RowOrderTest, MatchesAPlainVectorUnderRandomChanges) {
  for (uint32_t seed = 1; seed <= 30; ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    RowOrder order;
    std::vector<xmlNodePtr> expected;
    uintptr_t next = 1;
    const int initial = static_cast<int>(random() % 300);
    for (int i = 0; i < initial; ++i) expected.push_back(Row(next++));
    order.Assign(expected);
    for (int step = 0; step < 2000; ++step) {
      const unsigned op = random() % 10;
      if (op < 3) {
        order.PushBack(Row(next));
        expected.push_back(Row(next++));
      } else if (op < 6 && !expected.empty()) {
        // Mostly the row just read or a random one; now and then one not held.
        const size_t at = random() % expected.size();
        if (random() % 2 == 0) {
          ASSERT_EQ(order.At(at), expected[at]);
        }
        ASSERT_TRUE(order.Remove(expected[at]));
        expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(at));
        ASSERT_FALSE(order.Remove(Row(next + 1000)));
      } else if (op < 7 && !expected.empty()) {
        const size_t at = random() % expected.size();
        ASSERT_TRUE(order.Replace(expected[at], Row(next)));
        expected[at] = Row(next++);
      } else if (op < 9 && !expected.empty()) {
        const size_t at = random() % expected.size();
        ASSERT_EQ(order.At(at), expected[at]);
      } else if (random() % 8 == 0) {
        ASSERT_EQ(order.All(), expected);
      }
      ASSERT_EQ(order.size(), expected.size());
    }
    for (size_t i = 0; i < expected.size(); ++i) ASSERT_EQ(order.At(i), expected[i]);
    EXPECT_EQ(order.All(), expected);
  }
}

TEST(RowOrderTest, RemovingFromTheFrontWhileReadingStaysInOrder) {
  std::vector<xmlNodePtr> rows;
  for (uintptr_t n = 1; n <= 1000; ++n) rows.push_back(Row(n));
  RowOrder order;
  order.Assign(rows);
  for (uintptr_t n = 1; n <= 1000; ++n) {
    ASSERT_EQ(order.At(0), Row(n));
    ASSERT_TRUE(order.Remove(order.At(0)));
    if (n < 1000) {
      ASSERT_EQ(order.At(order.size() - 1), Row(1000));
    }
  }
  EXPECT_TRUE(order.empty());
  order.PushBack(Row(5));
  EXPECT_EQ(order.All(), std::vector<xmlNodePtr>{Row(5)});
}

TEST(RowOrderTest, ClearEmptiesAndForgetsEveryRow) {
  RowOrder order;
  order.Assign({Row(1), Row(2), Row(3)});
  ASSERT_TRUE(order.Remove(Row(2)));
  order.Clear();
  EXPECT_TRUE(order.empty());
  EXPECT_FALSE(order.Remove(Row(1)));
  EXPECT_FALSE(order.Replace(Row(3), Row(4)));
}

}  // namespace
}  // namespace veld::datasets_internal
