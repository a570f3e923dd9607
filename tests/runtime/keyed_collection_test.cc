#include "veld/runtime/keyed_collection.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "support/testing.h"

namespace veld {
namespace {

constexpr char kInvalidCall[] = "Invalid procedure call or argument";
constexpr char kOutOfRange[] = "Subscript out of range";
constexpr char kDuplicate[] = "This key is already associated with an element of this collection";

std::vector<std::string> Contents(const KeyedCollection<std::string>& c) {
  std::vector<std::string> out;
  for (const std::string& item : c) out.push_back(item);
  return out;
}

using Strings = std::vector<std::string>;

TEST(KeyedCollectionTest, StartsEmpty) {
  KeyedCollection<std::string> c;
  EXPECT_EQ(c.Count(), 0);
  EXPECT_EQ(c.begin(), c.end());
  EXPECT_RAISES(c.Item(1), 9, kOutOfRange);
}

TEST(KeyedCollectionTest, AddsAtTheEndAndReadsByOneBasedPosition) {
  KeyedCollection<std::string> c;
  c.Add("a");
  c.Add("b");
  c.Add("c");
  EXPECT_EQ(c.Count(), 3);
  EXPECT_EQ(c.Item(1), "a");
  EXPECT_EQ(c.Item(2), "b");
  EXPECT_EQ(c.Item(3), "c");
  EXPECT_EQ(Contents(c), (Strings{"a", "b", "c"}));
}

TEST(KeyedCollectionTest, ReadsByKey) {
  KeyedCollection<std::string> c;
  c.Add("apple", "A");
  c.Add("no key");
  c.Add("banana", std::string("B"));
  EXPECT_EQ(c.Item("A"), "apple");
  EXPECT_EQ(c.Item(std::string("B")), "banana");
  EXPECT_EQ(c.Item(Variant("B")), "banana");
  EXPECT_EQ(c.Item(Variant(2)), "no key");
}

TEST(KeyedCollectionTest, AddReturnsTheStoredItem) {
  KeyedCollection<std::string> c;
  std::string& stored = c.Add("x", "k");
  stored = "changed";
  EXPECT_EQ(c.Item("k"), "changed");
}

TEST(KeyedCollectionTest, KeysCompareCaseInsensitively) {
  KeyedCollection<std::string> c;
  c.Add("v", "Test");
  EXPECT_EQ(c.Item("TEST"), "v");
  EXPECT_EQ(c.Item("test"), "v");
  EXPECT_RAISES(c.Add("w", "TEST"), 457, kDuplicate);
}

TEST(KeyedCollectionTest, NonAsciiKeysCompareCaseInsensitively) {
  KeyedCollection<std::string> c;
  c.Add("fruit", "\xC3\x84PFEL");              // ÄPFEL
  EXPECT_EQ(c.Item("\xC3\xA4pfel"), "fruit");  // äpfel
  EXPECT_RAISES(c.Add("again", "\xC3\xA4pFeL"), 457, kDuplicate);
  c.Add("street",
        "Stra\xC3\x9F"
        "e");
  EXPECT_EQ(c.Item("STRASSE"), "street");
  EXPECT_RAISES(c.Item("apfel"), 5, kInvalidCall);  // Accents count.
}

TEST(KeyedCollectionTest, KeyAtGivesTheKeyAsGiven) {
  KeyedCollection<std::string> c;
  c.Add("a", "MixedCase");
  c.Add("b");
  ASSERT_NE(c.KeyAt(1), nullptr);
  EXPECT_EQ(*c.KeyAt(1), "MixedCase");
  EXPECT_EQ(c.KeyAt(2), nullptr);
  EXPECT_RAISES(c.KeyAt(3), 9, kOutOfRange);
}

TEST(KeyedCollectionTest, DuplicateKeyRaises457AndLeavesTheCollectionUnchanged) {
  KeyedCollection<std::string> c;
  c.Add("a", "k1");
  c.Add("b", "k2");
  EXPECT_RAISES(c.Add("c", "K1"), 457, kDuplicate);
  EXPECT_EQ(c.Count(), 2);
  EXPECT_EQ(Contents(c), (Strings{"a", "b"}));
  EXPECT_EQ(c.Item("k1"), "a");
  EXPECT_RAISES(c.Add("c", "k2", Variant(1)), 457, kDuplicate);
  EXPECT_EQ(Contents(c), (Strings{"a", "b"}));
}

TEST(KeyedCollectionTest, UnknownKeyRaises5) {
  KeyedCollection<std::string> c;
  c.Add("a", "k");
  EXPECT_RAISES(c.Item("missing"), 5, kInvalidCall);
  EXPECT_RAISES(c.Item(Variant("missing")), 5, kInvalidCall);
  EXPECT_RAISES(c.Remove("missing"), 5, kInvalidCall);
  EXPECT_EQ(c.Count(), 1);
}

TEST(KeyedCollectionTest, PositionZeroOrPastTheEndRaises9) {
  KeyedCollection<std::string> c;
  c.Add("a");
  c.Add("b");
  EXPECT_RAISES(c.Item(0), 9, kOutOfRange);
  EXPECT_RAISES(c.Item(3), 9, kOutOfRange);
  EXPECT_RAISES(c.Item(-1), 9, kOutOfRange);
  EXPECT_RAISES(c.Item(Variant(0)), 9, kOutOfRange);
  EXPECT_RAISES(c.Remove(0), 9, kOutOfRange);
  EXPECT_RAISES(c.Remove(c.Count() + 1), 9, kOutOfRange);
  EXPECT_EQ(c.Count(), 2);
}

TEST(KeyedCollectionTest, NumberAndNumericTextIndexDiffer) {
  KeyedCollection<std::string> c;
  c.Add("first", "2");
  c.Add("second", "1");
  EXPECT_EQ(c.Item(Variant(1)), "first");
  EXPECT_EQ(c.Item(Variant("1")), "second");
  EXPECT_EQ(c.Item("1"), "second");
}

TEST(KeyedCollectionTest, VariantIndexKinds) {
  KeyedCollection<std::string> c;
  c.Add("a");
  c.Add("b");
  c.Add("c");
  EXPECT_EQ(c.Item(Variant(uint8_t{1})), "a");
  EXPECT_EQ(c.Item(Variant(int16_t{2})), "b");
  EXPECT_EQ(c.Item(Variant(3.0)), "c");
  EXPECT_EQ(c.Item(Variant(2.5)), "b");  // Halves to even.
  EXPECT_EQ(c.Item(Variant(2.6)), "c");
  EXPECT_EQ(c.Item(Variant::Date(1.0)), "a");
  EXPECT_RAISES(c.Item(Variant(true)), 9, kOutOfRange);     // True is -1.
  EXPECT_RAISES(c.Item(Variant::Empty()), 9, kOutOfRange);  // Empty is 0.
  EXPECT_RAISES(c.Item(Variant(1e10)), 6, "Overflow");
  EXPECT_RAISES(c.Item(Variant::Null()), 13, "Type mismatch");
  EXPECT_RAISES(c.Item(Variant::Missing()), 13, "Type mismatch");
  EXPECT_RAISES(c.Remove(Variant::Null()), 13, "Type mismatch");
  EXPECT_EQ(c.Count(), 3);
}

TEST(KeyedCollectionTest, RemovalClosesTheGap) {
  KeyedCollection<std::string> c;
  c.Add("a", "ka");
  c.Add("b", "kb");
  c.Add("c", "kc");
  c.Add("d", "kd");
  c.Remove(2);
  EXPECT_EQ(c.Count(), 3);
  EXPECT_EQ(c.Item(2), "c");
  EXPECT_EQ(Contents(c), (Strings{"a", "c", "d"}));
  EXPECT_RAISES(c.Item("kb"), 5, kInvalidCall);
  c.Remove("KC");
  EXPECT_EQ(Contents(c), (Strings{"a", "d"}));
  EXPECT_EQ(c.Item(2), "d");
  c.Remove(Variant(1));
  EXPECT_EQ(Contents(c), (Strings{"d"}));
  c.Remove(Variant("kd"));
  EXPECT_EQ(c.Count(), 0);
  EXPECT_EQ(c.begin(), c.end());
}

TEST(KeyedCollectionTest, RemovedKeyCanBeAddedAgain) {
  KeyedCollection<std::string> c;
  c.Add("old", "k");
  c.Add("other");
  c.Remove("k");
  c.Add("new", "K");
  EXPECT_EQ(c.Item("k"), "new");
  EXPECT_EQ(Contents(c), (Strings{"other", "new"}));
}

// The classic documentation's example: Add "a"; Add "c","CC"; Add "b","BB",2; Add "d".
TEST(KeyedCollectionTest, BeforeInsertsAheadOfAnElement) {
  KeyedCollection<std::string> c;
  c.Add("a");
  c.Add("c", "CC");
  c.Add("b", "BB", Variant(2));
  c.Add("d");
  EXPECT_EQ(c.Item(1), "a");
  EXPECT_EQ(c.Item(2), "b");
  EXPECT_EQ(c.Item(3), "c");
  EXPECT_EQ(c.Item("BB"), "b");
  EXPECT_RAISES(c.Item("d"), 5, kInvalidCall);
  EXPECT_EQ(Contents(c), (Strings{"a", "b", "c", "d"}));
}

TEST(KeyedCollectionTest, BeforeAndAfterTakePositionsOrKeys) {
  KeyedCollection<std::string> c;
  c.Add("m", "M");
  c.Add("first", nullptr, Variant(1));
  c.Add("last", nullptr, Variant::Missing(), Variant(2));
  c.Add("after m", nullptr, Variant::Missing(), Variant("m"));
  c.Add("before m", nullptr, Variant("M"));
  EXPECT_EQ(Contents(c), (Strings{"first", "before m", "m", "after m", "last"}));
  EXPECT_EQ(c.Item("M"), "m");
  c.Add("end", nullptr, Variant::Missing(), Variant(c.Count()));
  EXPECT_EQ(c.Item(c.Count()), "end");
}

TEST(KeyedCollectionTest, BadBeforeOrAfterRaisesAndChangesNothing) {
  KeyedCollection<std::string> c;
  c.Add("a", "ka");
  c.Add("b");
  EXPECT_RAISES(c.Add("x", nullptr, Variant(1), Variant(1)), 5, kInvalidCall);
  EXPECT_RAISES(c.Add("x", "kx", Variant(1), Variant(2)), 5, kInvalidCall);
  EXPECT_RAISES(c.Add("x", nullptr, Variant(3)), 9, kOutOfRange);
  EXPECT_RAISES(c.Add("x", nullptr, Variant(0)), 9, kOutOfRange);
  EXPECT_RAISES(c.Add("x", nullptr, Variant::Missing(), Variant(3)), 9, kOutOfRange);
  EXPECT_RAISES(c.Add("x", "kx", Variant("nope")), 5, kInvalidCall);
  EXPECT_RAISES(c.Add("x", nullptr, Variant::Missing(), Variant("nope")), 5, kInvalidCall);
  EXPECT_EQ(Contents(c), (Strings{"a", "b"}));
  EXPECT_FALSE(c.ContainsKey("kx"));
}

TEST(KeyedCollectionTest, BeforeOnAnEmptyCollectionRaises9) {
  KeyedCollection<std::string> c;
  EXPECT_RAISES(c.Add("x", nullptr, Variant(1)), 9, kOutOfRange);
  EXPECT_EQ(c.Count(), 0);
}

TEST(KeyedCollectionTest, FindNeverRaises) {
  KeyedCollection<std::string> c;
  c.Add("a", "Key");
  Err().Clear();
  ASSERT_NE(c.Find("KEY"), nullptr);
  EXPECT_EQ(*c.Find("key"), "a");
  EXPECT_EQ(c.Find("other"), nullptr);
  EXPECT_TRUE(c.ContainsKey("kEy"));
  EXPECT_FALSE(c.ContainsKey("other"));
  const KeyedCollection<std::string>& view = c;
  EXPECT_EQ(*view.Find("KEY"), "a");
  EXPECT_EQ(Err().Number(), 0);
}

TEST(KeyedCollectionTest, ClearRemovesEverything) {
  KeyedCollection<std::string> c;
  c.Add("a", "k");
  c.Add("b");
  c.Remove(1);
  c.Clear();
  EXPECT_EQ(c.Count(), 0);
  EXPECT_EQ(c.begin(), c.end());
  c.Add("again", "k");
  EXPECT_EQ(c.Item(1), "again");
}

TEST(KeyedCollectionTest, HoldsMoveOnlyItemsAndKeepsReferencesStable) {
  KeyedCollection<std::unique_ptr<int>> c;
  int* first = c.Add(std::make_unique<int>(1), "one").get();
  for (int i = 2; i <= 100; ++i) c.Add(std::make_unique<int>(i));
  EXPECT_EQ(c.Item("ONE").get(), first);
  c.Remove(50);
  EXPECT_EQ(*c.Item(50), 51);
  int sum = 0;
  for (const auto& item : c) sum += *item;
  EXPECT_EQ(sum, 5050 - 50);
}

TEST(KeyedCollectionTest, IteratorsWalkInOrderAfterRemovals) {
  KeyedCollection<int> c;
  for (int i = 1; i <= 10; ++i) c.Add(i);
  c.Remove(1);
  c.Remove(4);  // The element 5.
  std::vector<int> seen;
  for (int& v : c) seen.push_back(v);
  EXPECT_EQ(seen, (std::vector<int>{2, 3, 4, 6, 7, 8, 9, 10}));
  KeyedCollection<int>::const_iterator it = c.begin();
  EXPECT_EQ(*it, 2);
  ++it;
  EXPECT_EQ(*it++, 3);
  EXPECT_EQ(*it, 4);
}

TEST(KeyedCollectionTest, MovedCollectionKeepsItsElements) {
  KeyedCollection<std::string> c;
  c.Add("a", "k");
  KeyedCollection<std::string> moved = std::move(c);
  EXPECT_EQ(moved.Item("K"), "a");
  EXPECT_EQ(moved.Count(), 1);
}

// A straightforward model to check positions, keys and order after random
// sequences of adds, inserts and removals.
TEST(KeyedCollectionTest, MatchesASimpleModelUnderRandomOperations) {
  std::mt19937 random(12345);
  KeyedCollection<int> c;
  std::vector<std::pair<int, std::optional<std::string>>> model;
  int next = 0;
  for (int step = 0; step < 20000; ++step) {
    const int op = static_cast<int>(random() % 10);
    const int count = static_cast<int>(model.size());
    if (op < 4 || count == 0) {
      const int value = next++;
      std::optional<std::string> key;
      if (random() % 2 == 0) key = "K" + std::to_string(value);
      const std::string* key_ptr = key ? &*key : nullptr;
      if (op == 0 && count > 0) {
        const int before = static_cast<int>(random() % count) + 1;
        c.Add(value, key_ptr, Variant(before));
        model.insert(model.begin() + (before - 1), {value, key});
      } else if (op == 1 && count > 0) {
        const int after = static_cast<int>(random() % count) + 1;
        c.Add(value, key_ptr, Variant::Missing(), Variant(after));
        model.insert(model.begin() + after, {value, key});
      } else {
        c.Add(value, key_ptr);
        model.push_back({value, key});
      }
    } else if (op < 7) {
      const int position = static_cast<int>(random() % count) + 1;
      c.Remove(position);
      model.erase(model.begin() + (position - 1));
    } else if (op < 8) {
      const int position = static_cast<int>(random() % count) + 1;
      if (model[position - 1].second) {
        c.Remove(*model[position - 1].second);
        model.erase(model.begin() + (position - 1));
      }
    } else {
      const int position = static_cast<int>(random() % count) + 1;
      ASSERT_EQ(c.Item(position), model[position - 1].first) << "step " << step;
      if (model[position - 1].second) {
        ASSERT_EQ(c.Item(*model[position - 1].second), model[position - 1].first);
      }
    }
    ASSERT_EQ(c.Count(), static_cast<int32_t>(model.size()));
  }
  std::vector<int> seen;
  for (int v : c) seen.push_back(v);
  std::vector<int> expected;
  for (const auto& entry : model) expected.push_back(entry.first);
  EXPECT_EQ(seen, expected);
  for (int i = 1; i <= c.Count(); ++i) ASSERT_EQ(c.Item(i), model[i - 1].first);
}

// 100k adds and removals by key and by position complete (a quadratic
// implementation would take minutes); no timing is asserted.
TEST(KeyedCollectionTest, ManyAddsAndRemovalsComplete) {
  constexpr int kCount = 100000;
  KeyedCollection<int> c;
  for (int i = 0; i < kCount; ++i) c.Add(i, "key" + std::to_string(i));
  EXPECT_EQ(c.Count(), kCount);
  EXPECT_EQ(c.Item("KEY77777"), 77777);
  EXPECT_EQ(c.Item(kCount / 2), kCount / 2 - 1);
  for (int i = 0; i < kCount; i += 2) c.Remove("KEY" + std::to_string(i));
  EXPECT_EQ(c.Count(), kCount / 2);
  EXPECT_EQ(c.Item(1), 1);
  EXPECT_EQ(c.Item(c.Count()), kCount - 1);
  while (c.Count() > 0) c.Remove(1);
  EXPECT_EQ(c.begin(), c.end());
  for (int i = 0; i < kCount; ++i) c.Add(i, "key" + std::to_string(i));
  for (int i = kCount - 1; i >= 0; i -= 3) c.Remove(Variant("Key" + std::to_string(i)));
  int expected_count = kCount - (kCount + 2) / 3;
  EXPECT_EQ(c.Count(), expected_count);
  int positions = 0;
  for (int i = 1; i <= c.Count(); ++i) positions += c.Item(i) >= 0 ? 1 : 0;
  EXPECT_EQ(positions, expected_count);
}

}  // namespace
}  // namespace veld
