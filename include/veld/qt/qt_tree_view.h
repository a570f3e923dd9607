// QtTreeView: a TreeView shown in a QTreeView.
//
// It is a HeadlessTreeView plus an item model over its nodes: texts, the
// node's image (its selected image while selected) through the icon map,
// the expanded nodes and the selection. No widget object is made per node.
// The view follows the control at the next turn of the Qt event loop, or at
// once on Sync(). Expanding, collapsing or selecting in the view does the
// same to the nodes.
//
// Edge cases: the view may be destroyed before the adapter (the adapter goes
// on headless); an image key the icon map does not have shows no image.
#ifndef VELD_QT_QT_TREE_VIEW_H_
#define VELD_QT_QT_TREE_VIEW_H_

#include <memory>

#include "veld/controls/headless_tree_view.h"
#include "veld/qt/export.h"
#include "veld/qt/icon_map.h"

class QAbstractItemModel;
class QTreeView;

namespace veld {

class VELD_QT_EXPORT QtTreeView : public HeadlessTreeView {
 public:
  // Shows the tree in `view` (not owned); nullptr makes a view of its own,
  // which the adapter deletes.
  explicit QtTreeView(QTreeView* view = nullptr);
  ~QtTreeView() override;

  QTreeView* View() const;
  QAbstractItemModel* Model() const;
  void SetIcons(IconMap icons);
  void Sync();

  struct Mirror;

 private:
  std::unique_ptr<Mirror> mirror_;
};

}  // namespace veld

#endif  // VELD_QT_QT_TREE_VIEW_H_
