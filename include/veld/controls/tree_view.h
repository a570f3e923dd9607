// TreeView: a hierarchy of nodes. See control.h for the rules every
// implementation keeps; in addition:
//   - Add with no relative adds a root after the last root; with a relative
//     (key or index) tvwChild makes the new node its last child,
//     tvwFirst / tvwLast the first / last of its siblings, tvwNext /
//     tvwPrevious the sibling right after / before it (tvwNext when the
//     relationship is left out). The relative is checked first, then the
//     relationship (5 when it is none of the five), then the key.
//   - Nodes keeps the order of addition; Remove removes the node's whole
//     subtree; EnsureVisible expands every ancestor.
#ifndef VELD_CONTROLS_TREE_VIEW_H_
#define VELD_CONTROLS_TREE_VIEW_H_

#include <cstdint>
#include <string>

#include "veld/controls/control.h"
#include "veld/export.h"
#include "veld/runtime/variant.h"

namespace veld {

enum TreeRelationshipConstants : int32_t {
  tvwFirst = 0,
  tvwLast = 1,
  tvwNext = 2,
  tvwPrevious = 3,
  tvwChild = 4,
};

class VELD_EXPORT Node {
 public:
  virtual ~Node();
  virtual int32_t Index() const = 0;
  virtual std::string Key() const = 0;
  virtual void SetKey(const std::string& key) = 0;
  virtual std::string Text() const = 0;
  virtual void SetText(const std::string& text) = 0;
  virtual std::string Tag() const = 0;
  virtual void SetTag(const std::string& tag) = 0;
  virtual std::string Image() const = 0;
  virtual void SetImage(const std::string& key) = 0;
  virtual std::string SelectedImage() const = 0;
  virtual void SetSelectedImage(const std::string& key) = 0;
  // The number of children.
  virtual int32_t Children() const = 0;
  // nullptr for a root.
  virtual Node* Parent() = 0;
  // The first child, or nullptr.
  virtual Node* Child() = 0;
  // The next sibling, or nullptr.
  virtual Node* Next() = 0;
  virtual bool Expanded() const = 0;
  virtual void SetExpanded(bool expanded) = 0;
  virtual bool Selected() const = 0;
  virtual void SetSelected(bool selected) = 0;
  virtual void EnsureVisible() = 0;
};

class VELD_EXPORT NodeCollection {
 public:
  virtual ~NodeCollection();
  virtual int32_t Count() const = 0;
  virtual Node& Item(const Variant& vIndexKey) = 0;
  virtual Node& Add(const Variant& Relative = Variant::Missing(),
                    const Variant& Relationship = Variant::Missing(),
                    const Variant& Key = Variant::Missing(),
                    const Variant& Text = Variant::Missing(),
                    const Variant& Image = Variant::Missing(),
                    const Variant& SelectedImage = Variant::Missing()) = 0;
  virtual void Remove(const Variant& vIndexKey) = 0;
  virtual void Clear() = 0;
};

class VELD_EXPORT TreeView : public Control {
 public:
  virtual NodeCollection& Nodes() = 0;
  // nullptr when nothing is selected.
  virtual Node* SelectedItem() = 0;
};

}  // namespace veld

#endif  // VELD_CONTROLS_TREE_VIEW_H_
