#include "veld/items/kvo_general_items.h"

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/testing.h"

namespace veld {
namespace {

constexpr const char* kDuplicateKey =
    "This key is already associated with an element of this collection";
constexpr const char* kBadPosition = "Subscript out of range";
constexpr const char* kUnknownKey = "Invalid procedure call or argument";

std::vector<std::string> Names(const KvoGeneralItems& items) {
  std::vector<std::string> names;
  for (const auto& item : items) names.push_back(item->Name);
  return names;
}

TEST(KvoGeneralItemTest, NewItemHasAllFieldsEmpty) {
  KvoGeneralItem item;
  EXPECT_EQ(item.Name, "");
  EXPECT_EQ(item.Value, "");
  EXPECT_EQ(item.TypeString, "");
  EXPECT_EQ(item.ExtraValue, "");
}

TEST(KvoGeneralItemsTest, NewCollectionIsEmptyWithoutRootTags) {
  KvoGeneralItems items;
  EXPECT_EQ(items.Count(), 0);
  EXPECT_EQ(items.RootTagCount(), 0);
  EXPECT_EQ(items.RootTagItem(1), nullptr);
}

TEST(KvoGeneralItemsTest, AddSetsAllFieldsAndReturnsTheStoredItem) {
  KvoGeneralItems items;
  auto added = items.Add("width", "120", "int", "px");
  ASSERT_NE(added, nullptr);
  EXPECT_EQ(added->Name, "width");
  EXPECT_EQ(added->Value, "120");
  EXPECT_EQ(added->TypeString, "int");
  EXPECT_EQ(added->ExtraValue, "px");
  EXPECT_EQ(items.Item(1), added);
}

TEST(KvoGeneralItemsTest, FieldSetOnReturnedItemChangesStoredItem) {
  KvoGeneralItems items;
  items.Add("a", "1", "", "", "k");
  items.Item("k")->Value = "2";
  EXPECT_EQ(items.GetItemValue(1), "2");
  items.GetItemByName("a")->ExtraValue = "x";
  EXPECT_EQ(items.Item(1)->ExtraValue, "x");
}

TEST(KvoGeneralItemsTest, KeysDifferingOnlyInCaseAreDuplicates) {
  KvoGeneralItems items;
  items.Add("first", "1", "", "", "k");
  EXPECT_RAISES(items.Add("second", "2", "", "", "K"), 457, kDuplicateKey);
  EXPECT_EQ(items.Count(), 1);
  EXPECT_EQ(items.Item("K")->Name, "first");
}

TEST(KvoGeneralItemsTest, SameNameWithoutKeysGivesTwoItemsAndFirstWinsByName) {
  KvoGeneralItems items;
  items.Add("a", "first");
  items.Add("a", "second");
  EXPECT_EQ(items.Count(), 2);
  EXPECT_EQ(items.GetItemValueByName("A"), "first");
  EXPECT_EQ(items.RemoveItemByName("a"), 2);
  EXPECT_EQ(items.Count(), 0);
}

TEST(KvoGeneralItemsTest, MissingNameGivesDefaultAsText) {
  KvoGeneralItems items;
  items.Add("a", "1");
  EXPECT_EQ(items.GetItemValueByName("missing", int32_t{5}), "5");
  EXPECT_EQ(items.GetItemValueByName("missing", true), "True");
  EXPECT_EQ(items.GetItemValueByName("missing"), "");
}

TEST(KvoGeneralItemsTest, ByNameLookupIsNotTrimmed) {
  KvoGeneralItems items;
  items.Add(" a", "1");
  EXPECT_EQ(items.GetItemByName("a"), nullptr);
  EXPECT_EQ(items.GetItemValueByName(" A"), "1");
}

TEST(KvoGeneralItemsTest, ByNameLookupIgnoresCaseBeyondAscii) {
  KvoGeneralItems items;
  items.Add("Äpfel", "1");
  items.Add("straße", "2");
  EXPECT_EQ(items.GetItemValueByName("äPFEL"), "1");
  // Upper case maps one character to one: ß stays ß, so "STRASSE" is another name.
  EXPECT_EQ(items.GetItemValueByName("STRAßE"), "2");
  EXPECT_EQ(items.GetItemValueByName("STRASSE", "none"), "none");
  EXPECT_EQ(items.GetItemValueByName("apfel", "none"), "none");
}

TEST(KvoGeneralItemsTest, SetItemValueByNameAddAddsThenChangesOnlyValue) {
  KvoGeneralItems items;
  EXPECT_TRUE(items.SetItemValueByNameAdd("x", "1", "int", "e"));
  ASSERT_EQ(items.Count(), 1);
  EXPECT_TRUE(items.SetItemValueByNameAdd("X", "2", "str", "f"));
  ASSERT_EQ(items.Count(), 1);
  auto item = items.Item(1);
  EXPECT_EQ(item->Name, "x");
  EXPECT_EQ(item->Value, "2");
  EXPECT_EQ(item->TypeString, "int");
  EXPECT_EQ(item->ExtraValue, "e");
}

TEST(KvoGeneralItemsTest, SetItemValueByNameAddConvertsTypeToText) {
  KvoGeneralItems items;
  items.SetItemValueByNameAdd("n", "v", int16_t{3});
  EXPECT_EQ(items.Item(1)->TypeString, "3");
}

TEST(KvoGeneralItemsTest, SetItemValueByNameAddWithUsedKeyRaises) {
  KvoGeneralItems items;
  items.Add("a", "1", "", "", "key");
  EXPECT_RAISES(items.SetItemValueByNameAdd("b", "2", "", "", "KEY"), 457, kDuplicateKey);
  EXPECT_EQ(items.Count(), 1);
}

TEST(KvoGeneralItemsTest, SetItemValueByNameChangesFirstMatchOrReturnsFalse) {
  KvoGeneralItems items;
  items.Add("a", "1");
  items.Add("a", "2");
  EXPECT_TRUE(items.SetItemValueByName("A", "9"));
  EXPECT_EQ(items.GetItemValue(1), "9");
  EXPECT_EQ(items.GetItemValue(2), "2");
  EXPECT_FALSE(items.SetItemValueByName("b", "9"));
  EXPECT_EQ(items.Count(), 2);
}

TEST(KvoGeneralItemsTest, RemoveItemByNameKeepsOtherItemsInOrder) {
  KvoGeneralItems items;
  for (const char* name : {"a", "b", "A", "c", "a"}) items.Add(name);
  EXPECT_EQ(items.RemoveItemByName("a"), 3);
  EXPECT_EQ(Names(items), (std::vector<std::string>{"b", "c"}));
  EXPECT_EQ(items.RemoveItemByName("zz"), 0);
}

TEST(KvoGeneralItemsTest, ItemByBadPositionOrUnknownKeyRaises) {
  KvoGeneralItems items;
  items.Add("a", "1", "", "", "k");
  EXPECT_RAISES(items.Item(0), 9, kBadPosition);
  EXPECT_RAISES(items.Item(2), 9, kBadPosition);
  EXPECT_RAISES(items.Item("nokey"), 5, kUnknownKey);
  EXPECT_RAISES(items.Item(Variant::Null()), 13, "Type mismatch");
}

TEST(KvoGeneralItemsTest, RemoveClosesTheGapAndRaisesForUnknownIndex) {
  KvoGeneralItems items;
  items.Add("a", "", "", "", "ka");
  items.Add("b");
  items.Add("c", "", "", "", "kc");
  items.Remove("KA");
  EXPECT_EQ(Names(items), (std::vector<std::string>{"b", "c"}));
  items.Remove(1);
  EXPECT_EQ(items.Item(1)->Name, "c");
  EXPECT_RAISES(items.Remove(5), 9, kBadPosition);
  EXPECT_RAISES(items.Remove("ka"), 5, kUnknownKey);
  EXPECT_EQ(items.Count(), 1);
}

TEST(KvoGeneralItemsTest, AddItemStoresACopyUnderTheNewKey) {
  KvoGeneralItems items;
  auto source = std::make_shared<KvoGeneralItem>();
  source->Name = "n";
  source->Value = "v";
  source->TypeString = "t";
  source->ExtraValue = "e";
  auto added = items.AddItem(source, "key");
  EXPECT_NE(added, source);
  source->Value = "changed";
  auto stored = items.Item("KEY");
  EXPECT_EQ(stored, added);
  EXPECT_EQ(stored->Name, "n");
  EXPECT_EQ(stored->Value, "v");
  EXPECT_EQ(stored->TypeString, "t");
  EXPECT_EQ(stored->ExtraValue, "e");
}

TEST(KvoGeneralItemsTest, AddItemOfNullRaisesObjectNotSet) {
  KvoGeneralItems items;
  EXPECT_RAISES(items.AddItem(nullptr), 91, "Object variable or With block variable not set");
  EXPECT_EQ(items.Count(), 0);
}

TEST(KvoGeneralItemsTest, GetItemValueSwallowsFailedLookups) {
  KvoGeneralItems items;
  items.Add("a", "1", "", "", "k");
  EXPECT_EQ(items.GetItemValue("k"), "1");
  EXPECT_EQ(items.GetItemValue(1), "1");
  EXPECT_EQ(items.GetItemValue(7), "");
  EXPECT_EQ(items.GetItemValue("nokey"), "");
  EXPECT_EQ(Err().Number(), 0);
}

TEST(KvoGeneralItemsTest, SetItemValueReturnsFalseForFailedLookups) {
  KvoGeneralItems items;
  items.Add("a", "1", "", "", "k");
  EXPECT_TRUE(items.SetItemValue("K", "2"));
  EXPECT_EQ(items.GetItemValue(1), "2");
  EXPECT_FALSE(items.SetItemValue(3, "x"));
  EXPECT_FALSE(items.SetItemValue("other", "x"));
  EXPECT_EQ(items.GetItemValue(1), "2");
}

TEST(KvoGeneralItemsTest, RootTagMatchesTrimmedNameIgnoringCase) {
  KvoGeneralItems items;
  EXPECT_TRUE(items.SetRootTag(" id ", "7"));
  std::string value;
  EXPECT_EQ(items.GetRootTag("ID", &value), 1);
  EXPECT_EQ(value, "7");
  EXPECT_EQ(items.RootTagItem(1)->Name, "id");
}

TEST(KvoGeneralItemsTest, RootTagKeyIsTheUntrimmedFirstName) {
  KvoGeneralItems items;
  items.SetRootTag(" id ", "7");
  EXPECT_EQ(items.RootTagItem(" ID ")->Value, "7");
  EXPECT_EQ(items.RootTagItem("id"), nullptr);
}

TEST(KvoGeneralItemsTest, SetRootTagWithEmptyNameReturnsFalse) {
  KvoGeneralItems items;
  EXPECT_FALSE(items.SetRootTag("", "v"));
  EXPECT_EQ(items.RootTagCount(), 0);
}

TEST(KvoGeneralItemsTest, SetRootTagWithBlankNameStoresEmptyName) {
  KvoGeneralItems items;
  EXPECT_TRUE(items.SetRootTag("  ", "v"));
  EXPECT_EQ(items.RootTagCount(), 1);
  EXPECT_EQ(items.RootTagItem(1)->Name, "");
}

TEST(KvoGeneralItemsTest, SettingExistingRootTagKeepsPositionAndTakesLatestSpelling) {
  KvoGeneralItems items;
  items.SetRootTag("a", "1");
  items.SetRootTag("Mode", "2");
  items.SetRootTag("c", "3");
  EXPECT_TRUE(items.SetRootTag(" MODE", "9"));
  EXPECT_EQ(items.RootTagCount(), 3);
  EXPECT_EQ(items.RootTagItem(2)->Name, "MODE");
  EXPECT_EQ(items.RootTagItem(2)->Value, "9");
  std::string value = "stale";
  EXPECT_EQ(items.GetRootTag("x", &value), 0);
  EXPECT_EQ(value, "");
}

TEST(KvoGeneralItemsTest, SetRootTagItemUsesNameAndValueButNotTheObject) {
  KvoGeneralItems items;
  auto tag = std::make_shared<KvoGeneralItem>();
  tag->Name = "lang";
  tag->Value = "en";
  EXPECT_TRUE(items.SetRootTagItem(tag));
  EXPECT_NE(items.RootTagItem(1), tag);
  EXPECT_EQ(items.RootTagItem(1)->Value, "en");
  EXPECT_FALSE(items.SetRootTagItem(nullptr));
}

TEST(KvoGeneralItemsTest, RemoveRootTagDoesNothingBeforeFirstTagThenRaises) {
  KvoGeneralItems items;
  items.RemoveRootTag(1);
  items.RemoveRootTag("x");
  items.SetRootTag("a", "1");
  items.SetRootTag("b", "2");
  items.RemoveRootTag("A");
  EXPECT_EQ(items.RootTagCount(), 1);
  EXPECT_EQ(items.RootTagItem(1)->Name, "b");
  EXPECT_RAISES(items.RemoveRootTag(2), 9, kBadPosition);
  EXPECT_RAISES(items.RemoveRootTag("a"), 5, kUnknownKey);
}

TEST(KvoGeneralItemsTest, ResetEmptiesBothListsAndKeepsThemUsable) {
  KvoGeneralItems items;
  items.Add("a", "1", "", "", "k");
  items.SetRootTag("t", "v");
  items.Reset();
  EXPECT_EQ(items.Count(), 0);
  EXPECT_EQ(items.RootTagCount(), 0);
  items.Add("b", "2", "", "", "k");
  EXPECT_EQ(items.Item("k")->Name, "b");
}

TEST(KvoGeneralItemsTest, CopyFromMakesDeepUnkeyedCopies) {
  auto source = std::make_shared<KvoGeneralItems>();
  source->Add("a", "1", "t", "e", "key");
  source->Add("b", "2");
  source->SetRootTag(" id ", "7");
  KvoGeneralItems copy;
  copy.Add("old");
  ASSERT_TRUE(copy.CopyFrom(source));
  EXPECT_EQ(Names(copy), (std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(copy.Item(1)->TypeString, "t");
  EXPECT_EQ(copy.Item(1)->ExtraValue, "e");
  EXPECT_RAISES(copy.Item("key"), 5, kUnknownKey);
  EXPECT_EQ(copy.RootTagCount(), 1);
  EXPECT_EQ(copy.RootTagItem("id")->Value, "7");

  copy.Item(1)->Value = "changed";
  source->Item(2)->Value = "changed too";
  EXPECT_EQ(source->Item(1)->Value, "1");
  EXPECT_EQ(copy.Item(2)->Value, "2");
}

TEST(KvoGeneralItemsTest, CopyFromNullResetsAndReturnsFalse) {
  KvoGeneralItems items;
  items.Add("a");
  EXPECT_FALSE(items.CopyFrom(std::shared_ptr<KvoGeneralItems>()));
  EXPECT_EQ(items.Count(), 0);
}

TEST(KvoGeneralItemsTest, NewEnumYieldsItemsInOrderAndIgnoresLaterChanges) {
  KvoGeneralItems items;
  items.Add("a");
  items.Add("b");
  auto enumerator = items.NewEnum();
  items.Add("c");
  items.Remove(1);
  EXPECT_EQ(enumerator.Next()->Name, "a");
  EXPECT_EQ(enumerator.Next()->Name, "b");
  EXPECT_EQ(enumerator.Next(), nullptr);
  enumerator.Reset();
  EXPECT_EQ(enumerator.Next()->Name, "a");
  std::vector<std::string> names;
  for (const auto& item : items.NewEnum()) names.push_back(item->Name);
  EXPECT_EQ(names, (std::vector<std::string>{"b", "c"}));
}

}  // namespace
}  // namespace veld
