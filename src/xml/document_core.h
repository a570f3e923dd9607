// The owner of one libxml2 document and of the nodes of it that are in no
// tree, shared by every handle (document, node, node list) that refers to it.
//
// Why: handles must stay valid after their document is replaced or their node
// is removed. So the xmlDoc lives as long as any handle refers to it, and a
// node taken out of the tree is not freed but kept as an "orphan" of its core.
// Orphans are freed when the core goes, and earlier, to keep long-lived
// documents that remove many nodes small, as soon as no node or list handle of
// the core is left (then nobody can reach an orphan any more).
#ifndef VELD_XML_DOCUMENT_CORE_H_
#define VELD_XML_DOCUMENT_CORE_H_

#include <atomic>
#include <cstdint>
#include <memory>
#include <unordered_set>
#include <vector>

#include "veld/xml/xml_parse_error.h"
#include "xml/xml_handles.h"
#include "xml/xml_parser.h"

namespace veld::xml_internal {

class DocumentState;

class DocumentCore {
 public:
  // A core owning `doc` (must not be null).
  explicit DocumentCore(DocPtr doc);
  ~DocumentCore();
  DocumentCore(const DocumentCore&) = delete;
  DocumentCore& operator=(const DocumentCore&) = delete;

  // A core with a new empty document.
  static std::shared_ptr<DocumentCore> CreateEmpty();

  xmlDocPtr doc() const { return doc_.get(); }
  xmlNodePtr doc_node() const { return reinterpret_cast<xmlNodePtr>(doc_.get()); }

  // Takes `node` out of its tree (if it is in one) and keeps it as an orphan.
  // Namespace references inside it are made self-contained first, so that it
  // survives the nodes that declared them.
  void Orphan(xmlNodePtr node);
  // Keeps a node that was made outside any tree (created, cloned).
  void AddOrphan(xmlNodePtr node);
  // Called when `node` is about to be linked into a tree: it stops being an
  // orphan (if it was one).
  void Adopt(xmlNodePtr node);

  // A namespace that lives as long as the core, for detached attributes,
  // which cannot carry a declaration of their own.
  xmlNsPtr StableNs(const xmlNs* ns);

  // Counting of the node and list handles of this core.
  void AddHandle() noexcept { handles_.fetch_add(1, std::memory_order_relaxed); }
  void DropHandle() noexcept;

  // The document object (see DocumentState) this core currently belongs to.
  std::shared_ptr<DocumentState> owner() const { return owner_.lock(); }
  void set_owner(const std::shared_ptr<DocumentState>& owner) { owner_ = owner; }

  size_t orphan_count() const { return orphans_.size(); }

  // What the parser noted about the document as it was parsed (unknown for a
  // document that was made rather than parsed). Changes made since are not
  // reflected.
  const ParseFacts& parse_facts() const { return parse_facts_; }
  void set_parse_facts(const ParseFacts& facts) { parse_facts_ = facts; }

 private:
  void FreeOrphans() noexcept;

  DocPtr doc_;
  std::unordered_set<xmlNodePtr> orphans_;
  std::vector<NsPtr> stable_ns_;
  std::atomic<int64_t> handles_{0};
  std::weak_ptr<DocumentState> owner_;
  ParseFacts parse_facts_ = ParseFacts::Unknown();
};

// What an XmlDocument handle refers to: the current core and the parse error
// of the last load. Copies of an XmlDocument share one state, so a load
// through any of them replaces the core for all.
class DocumentState : public std::enable_shared_from_this<DocumentState> {
 public:
  static std::shared_ptr<DocumentState> Create(std::shared_ptr<DocumentCore> core);

  const std::shared_ptr<DocumentCore>& core() const { return core_; }
  // Makes `core` the current one; the previous core lives on while handles
  // refer to it.
  void Replace(std::shared_ptr<DocumentCore> core);

  XmlParseError parse_error;

 private:
  std::shared_ptr<DocumentCore> core_;
};

// Records in `doc` that its content is UTF-8 (it always is in memory).
void MarkUtf8(xmlDocPtr doc);

}  // namespace veld::xml_internal

#endif  // VELD_XML_DOCUMENT_CORE_H_
