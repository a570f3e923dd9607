#include "xml/document_core.h"

#include <mutex>
#include <new>
#include <utility>

#include <libxslt/xslt.h>

#include "xml/xml_tree.h"

namespace veld::xml_internal {

void EnsureXmlLibrary() {
  static std::once_flag once;
  std::call_once(once, [] {
    xmlInitParser();
    xsltInit();
  });
}

void MarkUtf8(xmlDocPtr doc) {
  // Documents in memory are UTF-8 whatever they were read from; saying so
  // also keeps the serialiser from writing non-ASCII attribute text as
  // character references.
  if (doc->encoding != nullptr) xmlFree(const_cast<xmlChar*>(doc->encoding));
  doc->encoding = xmlStrdup(XmlText("UTF-8"));
}

DocumentCore::DocumentCore(DocPtr doc) : doc_(std::move(doc)) {}

DocumentCore::~DocumentCore() {
  // Orphans first: freeing a node consults its document (string dictionary,
  // ID table).
  FreeOrphans();
  doc_.reset();
}

std::shared_ptr<DocumentCore> DocumentCore::CreateEmpty() {
  EnsureXmlLibrary();
  DocPtr doc(xmlNewDoc(XmlText("1.0")));
  if (!doc) throw std::bad_alloc();
  MarkUtf8(doc.get());
  return std::make_shared<DocumentCore>(std::move(doc));
}

void DocumentCore::Orphan(xmlNodePtr node) {
  xmlUnlinkNode(node);
  if (node->type == XML_ATTRIBUTE_NODE) {
    // The declaration the attribute's namespace points at belongs to its
    // former element, which may be freed before the attribute.
    if (node->ns != nullptr && node->ns != doc_->oldNs) node->ns = StableNs(node->ns);
  } else if (node->type == XML_ELEMENT_NODE) {
    ReconcileNamespaces(node);
  }
  orphans_.insert(node);
}

void DocumentCore::AddOrphan(xmlNodePtr node) { orphans_.insert(node); }

void DocumentCore::Adopt(xmlNodePtr node) { orphans_.erase(node); }

xmlNsPtr DocumentCore::StableNs(const xmlNs* ns) {
  for (const NsPtr& kept : stable_ns_) {
    if (xmlStrEqual(kept->href, ns->href) && xmlStrEqual(kept->prefix, ns->prefix)) {
      return kept.get();
    }
  }
  NsPtr copy(xmlNewNs(nullptr, ns->href, ns->prefix));
  if (!copy) throw std::bad_alloc();
  stable_ns_.push_back(std::move(copy));
  return stable_ns_.back().get();
}

void DocumentCore::DropHandle() noexcept {
  if (handles_.fetch_sub(1, std::memory_order_acq_rel) == 1 && !orphans_.empty()) FreeOrphans();
}

void DocumentCore::FreeOrphans() noexcept {
  std::unordered_set<xmlNodePtr> orphans;
  orphans.swap(orphans_);
  for (xmlNodePtr node : orphans) NodePtr free_it(node);
}

std::shared_ptr<DocumentState> DocumentState::Create(std::shared_ptr<DocumentCore> core) {
  auto state = std::make_shared<DocumentState>();
  state->Replace(std::move(core));
  return state;
}

void DocumentState::Replace(std::shared_ptr<DocumentCore> core) {
  core->set_owner(shared_from_this());
  core_ = std::move(core);
}

}  // namespace veld::xml_internal
