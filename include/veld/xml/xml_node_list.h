// XmlNodeList: an ordered list of nodes of one document, as handed out by
// SelectNodes, ChildNodes and Attributes.
//
// A list is a snapshot taken when it was made: later changes to the tree do
// not add or remove entries. Like XmlNode it keeps its nodes usable for as
// long as the list exists, even when they are removed from their tree or
// their document is replaced. Copies are cheap and share the entries.
//
// A default-made list is unset (IsNull, converts to false) and behaves as an
// empty one. Positions are 0-based, as in the DOM. Range-for yields XmlNode.
#ifndef VELD_XML_XML_NODE_LIST_H_
#define VELD_XML_XML_NODE_LIST_H_

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <vector>

#include "veld/export.h"
#include "veld/xml/xml_node.h"

namespace veld {

class VELD_EXPORT XmlNodeList {
 public:
  class const_iterator {
   public:
    using iterator_category = std::input_iterator_tag;
    using value_type = XmlNode;
    using difference_type = std::ptrdiff_t;
    using pointer = void;
    using reference = XmlNode;

    const_iterator() = default;
    XmlNode operator*() const { return list_->Item(index_); }
    const_iterator& operator++() {
      ++index_;
      return *this;
    }
    const_iterator operator++(int) {
      const_iterator before = *this;
      ++index_;
      return before;
    }
    bool operator==(const const_iterator& other) const { return index_ == other.index_; }

   private:
    friend class XmlNodeList;
    const_iterator(const XmlNodeList* list, int32_t index) : list_(list), index_(index) {}

    const XmlNodeList* list_ = nullptr;
    int32_t index_ = 0;
  };

  // An unset list.
  XmlNodeList() noexcept;
  XmlNodeList(const XmlNodeList& other) noexcept;
  XmlNodeList(XmlNodeList&& other) noexcept;
  XmlNodeList& operator=(const XmlNodeList& other) noexcept;
  XmlNodeList& operator=(XmlNodeList&& other) noexcept;
  ~XmlNodeList();

  bool IsNull() const noexcept { return core_ == nullptr; }
  explicit operator bool() const noexcept { return core_ != nullptr; }

  // Number of nodes; 0 for an unset list.
  int32_t Length() const noexcept;
  // The node at 0-based `index`, or a null node when `index` is out of range.
  XmlNode Item(int32_t index) const;

  const_iterator begin() const { return const_iterator(this, 0); }
  const_iterator end() const { return const_iterator(this, Length()); }

 private:
  friend struct xml_internal::Access;
  XmlNodeList(std::shared_ptr<xml_internal::DocumentCore> core,
              std::shared_ptr<const std::vector<xml_internal::RawNode*>> nodes) noexcept;

  std::shared_ptr<xml_internal::DocumentCore> core_;
  std::shared_ptr<const std::vector<xml_internal::RawNode*>> nodes_;
};

}  // namespace veld

#endif  // VELD_XML_XML_NODE_LIST_H_
