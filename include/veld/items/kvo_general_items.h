// KvoGeneralItems: an ordered, optionally keyed list of KvoGeneralItem plus a
// small list of name/value "root tags", with an XML form.
//
// The option store, the datasets and the XML helper hand their results to the
// caller in one of these; callers also make their own, fill them, and save or
// parse them as XML.
//
// Two notions must not be confused. A key is given only when an item is added
// (Add, AddItem, SetItemValueByNameAdd, Parse with bNameAsKey); keys are
// unique and compare ignoring case. An item's Name is searched linearly by the
// by-name members, which take the first match ignoring case; names need not
// be unique.
//
// Failures. The collection keeps no error record. Item, Remove, RemoveRootTag,
// Add, AddItem and SetItemValueByNameAdd raise AutomationError when the keyed
// list refuses (9 "Subscript out of range" for a bad position, 5 "Invalid
// procedure call or argument" for an unknown key, 457 "This key is already
// associated with an element of this collection" for a key in use, 13 "Type
// mismatch" for a Null or Missing index); the list is then unchanged.
// RootTagItem, GetItemValue and SetItemValue swallow lookup failures. The XML
// members never raise: they return false and put the message into their
// optional last argument.
//
// XML form, as written by Save and SaveFile: a root element named sRootKey
// whose attributes are the root tags, holding one empty element named
// sItemTag per item with the attributes "name", "value" (both always written),
// "type" and "extra" (each only when not empty). No declaration, nothing
// between elements. Keys are not written.
//
// As read by Parse and ParseFile: any root element, all its attributes become
// root tags; items are the root's child elements named sItemTag (or, when
// sItemTag is empty, named as the root's first child node, whatever its kind:
// a leading comment, processing instruction or text node selects no items)
// that have a non-empty "name" attribute. "value", "type" and "extra" are
// read from their attributes or, when an attribute is missing, from the
// element's first text child. Names and values are trimmed of blanks.
#ifndef VELD_ITEMS_KVO_GENERAL_ITEMS_H_
#define VELD_ITEMS_KVO_GENERAL_ITEMS_H_

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "veld/export.h"
#include "veld/items/kvo_general_item.h"
#include "veld/runtime/keyed_collection.h"
#include "veld/runtime/variant.h"

namespace veld {

class XmlNode;
class KvoGeneralItems;

namespace items_internal {
bool ParseElement(KvoGeneralItems& items, const XmlNode& root, bool bNameAsKey,
                  const std::string& sItemTag, std::string* sParseErrMsg);
}  // namespace items_internal

class VELD_EXPORT KvoGeneralItems {
  using ItemList = KeyedCollection<std::shared_ptr<KvoGeneralItem>>;

 public:
  using ItemPtr = std::shared_ptr<KvoGeneralItem>;
  using iterator = ItemList::const_iterator;

  // A forward enumerator over the items in list order, taken as a snapshot:
  // later changes to the collection do not disturb it.
  class VELD_EXPORT Enumerator {
   public:
    using const_iterator = std::vector<ItemPtr>::const_iterator;

    // The next item, or nullptr after the last one.
    ItemPtr Next();
    // Starts again from the first item.
    void Reset() { next_ = 0; }

    const_iterator begin() const { return items_.begin(); }
    const_iterator end() const { return items_.end(); }

   private:
    friend class KvoGeneralItems;
    explicit Enumerator(std::vector<ItemPtr> items) : items_(std::move(items)) {}

    std::vector<ItemPtr> items_;
    size_t next_ = 0;
  };

  KvoGeneralItems();
  ~KvoGeneralItems();
  KvoGeneralItems(const KvoGeneralItems&) = delete;
  KvoGeneralItems& operator=(const KvoGeneralItems&) = delete;

  // --- The item list ---

  Enumerator NewEnum() const;
  // Range-for over the stored items, in list order. Adding or removing items
  // invalidates the iterators.
  iterator begin() const { return items_.begin(); }
  iterator end() const { return items_.end(); }

  int32_t Count() const { return items_.Count(); }

  // The item at a 1-based position or with a key. Raises (see above).
  ItemPtr Item(const Variant& vntIndexKey) const;

  // Removes the item at a position or with a key; later items move down.
  // Raises (see above).
  void Remove(const Variant& vntIndexKey);

  // Appends a new item with these fields, under `sKey` when it is not empty,
  // and returns it. Raises 457 when `sKey` is in use (ignoring case); the item
  // is then not added. Names are never checked for duplicates.
  ItemPtr Add(const std::string& Name, const std::string& Value = "",
              const std::string& TypeString = "", const std::string& ExtraValue = "",
              const std::string& sKey = "");

  // Appends a copy of `cItem` (a new item, not `cItem` itself) as Add does.
  // Raises 91 "Object variable or With block variable not set" for a null item.
  ItemPtr AddItem(const ItemPtr& cItem, const std::string& sKey = "");

  // --- By name (first match, ignoring case; neither side trimmed) ---

  // nullptr when no item has that name.
  ItemPtr GetItemByName(const std::string& sName) const;
  // The Value of the first item named `sName`, or `sDefault` as text.
  std::string GetItemValueByName(const std::string& sName, const Variant& sDefault = "") const;
  // Sets the Value of the first item named `sName`; false when there is none.
  bool SetItemValueByName(const std::string& sName, const std::string& sValue);
  // Sets only the Value of the first item named `sName`; when there is none,
  // adds one with all these fields (TypeString as text) under `sKey`. A key
  // in use raises as Add does.
  bool SetItemValueByNameAdd(const std::string& sName, const std::string& sValue,
                             const Variant& TypeString = "", const std::string& ExtraValue = "",
                             const std::string& sKey = "");
  // Removes every item named `sName` and returns how many went.
  int32_t RemoveItemByName(const std::string& sName);

  // --- By position or key, forgiving ---

  // The Value of the item at a position or key; "" when there is none.
  std::string GetItemValue(const Variant& vtIndexKey) const;
  // Sets the Value of the item at a position or key; false when there is none.
  bool SetItemValue(const Variant& vtIndexKey, const std::string& sValue);

  // --- Root tags ---

  // 0 until the first root tag is set.
  int32_t RootTagCount() const;
  // The root tag at a position or with a key (the name as first passed to
  // SetRootTag); nullptr when there is none.
  ItemPtr RootTagItem(const Variant& vntIndexKey) const;
  // The 1-based position of the root tag named `sName` (trimmed; names
  // compare ignoring case), or 0. `sValue`, when given, receives its value,
  // or "" when there is none.
  int32_t GetRootTag(const std::string& sName, std::string* sValue = nullptr) const;
  // Sets a root tag: an existing one (by GetRootTag) keeps its position and
  // takes the trimmed spelling of `sName` and the new value; otherwise one is
  // appended. False, and nothing changed, when `sName` is empty.
  bool SetRootTag(const std::string& sName, const std::string& sValue);
  // SetRootTag(cItem->Name, cItem->Value); false for a null item.
  bool SetRootTagItem(const ItemPtr& cItem);
  // Removes a root tag. Does nothing before the first root tag was set;
  // otherwise raises as Remove does.
  void RemoveRootTag(const Variant& vntIndexKey);

  // --- Whole collection ---

  // Empties both lists. An existing root-tag list stays, empty.
  void Reset();
  // Replaces the content with new, unkeyed copies of the items and root tags
  // of `cNewItem`. False (with what was copied so far kept) when it fails;
  // false and an empty collection for a null argument.
  bool CopyFrom(const std::shared_ptr<KvoGeneralItems>& cNewItem);
  bool CopyFrom(const KvoGeneralItems& cNewItem);

  // --- XML form ---

  // The collection as an items document. On failure returns false, leaves
  // `sItemsXml` unchanged and puts the message into `sSaveErrMsg`: "Failed to
  // create xml root element.", or the XML layer's description of an invalid
  // element or attribute name.
  bool Save(std::string& sItemsXml, const std::string& sRootKey = "group",
            const std::string& sItemTag = "option", std::string* sSaveErrMsg = nullptr) const;
  // As Save, writing the document to `sFilename` (UTF-8, no declaration).
  bool SaveFile(const std::string& sFilename, const std::string& sRootKey = "group",
                const std::string& sItemTag = "option", std::string* sSaveErrMsg = nullptr) const;
  // Replaces the content with that of an items document. A text of blanks
  // gives an empty collection and true. On failure the collection is left
  // empty, false is returned and `sParseErrMsg` receives "Failed to load items
  // Xml.", "Failed to add new item.", the duplicate-key error's description
  // (with bNameAsKey) or an XPath error's description (for a bad sItemTag).
  bool Parse(const std::string& sItemsXml, bool bNameAsKey = false,
             const std::string& sItemTag = "", std::string* sParseErrMsg = nullptr);
  // As Parse, reading the document from a file; a missing or malformed file
  // fails with "Failed to load items Xml.".
  bool ParseFile(const std::string& sFilename, bool bNameAsKey = false,
                 const std::string& sItemTag = "", std::string* sParseErrMsg = nullptr);

 private:
  friend bool items_internal::ParseElement(KvoGeneralItems&, const XmlNode&, bool,
                                           const std::string&, std::string*);

  // Replaces the content with the root tags and items below `root`.
  void Fill(const XmlNode& root, bool bNameAsKey, const std::string& sItemTag);

  ItemList items_;
  // Created by the first root tag set.
  std::unique_ptr<ItemList> root_tags_;
};

}  // namespace veld

#endif  // VELD_ITEMS_KVO_GENERAL_ITEMS_H_
