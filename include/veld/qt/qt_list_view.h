// QtListView: a ListView shown in a QTreeView in report mode.
//
// It is a HeadlessListView (every rule of the control lives there) plus a
// table model over its items that a QTreeView shows: columns with their
// captions, widths (twips turned into pixels by the platform's twips per
// pixel) and alignment, the items' small icons (else their icons) through
// the icon map, the fore colours of items and subitems, the selection, the
// item last scrolled into view and the sort indicator. No widget object is
// made per row, so a list of a million items costs one model and one view.
//
// The view follows the control at the next turn of the Qt event loop after a
// change, or at once on Sync(); many changes in a row (a whole load) cost one
// update. Selecting a row in the view selects the item in the control.
//
// Edge cases:
//   - The view may be destroyed before the adapter: the adapter goes on as a
//     headless list. Destroying the adapter first leaves the view empty.
//   - An image key that the icon map does not have shows no image.
//   - Header clicks sort only after SortOnHeaderClick(helper): a click calls
//     helper->ListView_SortData(this, column). A click that arrives while a
//     sort started by a click is running is ignored; one that arrives while
//     the host fills the list (from a progress listener that runs the event
//     loop) sorts the items loaded so far, and later items are added
//     unsorted, as for any list.
//   - Colour 0 (black, the default) shows in the palette's text colour.
#ifndef VELD_QT_QT_LIST_VIEW_H_
#define VELD_QT_QT_LIST_VIEW_H_

#include <memory>

#include "veld/controls/headless_list_view.h"
#include "veld/qt/export.h"
#include "veld/qt/icon_map.h"

class QAbstractItemModel;
class QTreeView;

namespace veld {

class KvoDataCtrlHelper;

class VELD_QT_EXPORT QtListView : public HeadlessListView {
 public:
  // Shows the list in `view` (not owned); nullptr makes a view of its own,
  // which the adapter deletes.
  explicit QtListView(QTreeView* view = nullptr);
  ~QtListView() override;

  // The view, or nullptr once it has been destroyed.
  QTreeView* View() const;
  QAbstractItemModel* Model() const;

  void SetIcons(IconMap icons);
  // nullptr turns header-click sorting off (the default).
  void SortOnHeaderClick(KvoDataCtrlHelper* helper);

  // Brings the view up to date now.
  void Sync();

  struct Mirror;

 private:
  std::unique_ptr<Mirror> mirror_;
};

}  // namespace veld

#endif  // VELD_QT_QT_LIST_VIEW_H_
