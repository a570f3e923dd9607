#include "veld/xml/xml_node_list.h"

#include <utility>

#include "xml/document_core.h"
#include "xml/xml_internal.h"

namespace veld {

using xml_internal::DocumentCore;
using xml_internal::RawNode;

XmlNodeList::XmlNodeList() noexcept = default;

XmlNodeList::XmlNodeList(std::shared_ptr<DocumentCore> core,
                         std::shared_ptr<const std::vector<RawNode*>> nodes) noexcept
    : core_(std::move(core)), nodes_(std::move(nodes)) {
  if (core_ != nullptr) core_->AddHandle();
}

XmlNodeList::XmlNodeList(const XmlNodeList& other) noexcept
    : core_(other.core_), nodes_(other.nodes_) {
  if (core_ != nullptr) core_->AddHandle();
}

XmlNodeList::XmlNodeList(XmlNodeList&& other) noexcept
    : core_(std::move(other.core_)), nodes_(std::move(other.nodes_)) {}

XmlNodeList& XmlNodeList::operator=(const XmlNodeList& other) noexcept {
  if (this != &other) {
    XmlNodeList copy(other);
    *this = std::move(copy);
  }
  return *this;
}

XmlNodeList& XmlNodeList::operator=(XmlNodeList&& other) noexcept {
  if (this != &other) {
    if (core_ != nullptr) {
      std::shared_ptr<DocumentCore> released = std::move(core_);
      released->DropHandle();
    }
    core_ = std::move(other.core_);
    nodes_ = std::move(other.nodes_);
  }
  return *this;
}

XmlNodeList::~XmlNodeList() {
  if (core_ != nullptr) core_->DropHandle();
}

int32_t XmlNodeList::Length() const noexcept {
  return nodes_ == nullptr ? 0 : static_cast<int32_t>(nodes_->size());
}

XmlNode XmlNodeList::Item(int32_t index) const {
  if (index < 0 || index >= Length()) return XmlNode();
  return xml_internal::Access::MakeNode(core_, reinterpret_cast<xmlNodePtr>((*nodes_)[index]));
}

}  // namespace veld
