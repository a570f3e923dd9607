// HeadlessListView: a complete in-memory list view, for tests, servers and
// command-line tools, and the state a GUI adapter mirrors.
#ifndef VELD_CONTROLS_HEADLESS_LIST_VIEW_H_
#define VELD_CONTROLS_HEADLESS_LIST_VIEW_H_

#include <memory>

#include "veld/controls/control_observer.h"
#include "veld/controls/list_view.h"
#include "veld/export.h"

namespace veld {

class VELD_EXPORT HeadlessListView : public ListView {
 public:
  HeadlessListView();
  ~HeadlessListView() override;

  ColumnHeaderCollection& ColumnHeaders() override;
  ListItemCollection& ListItems() override;
  ListItem* SelectedItem() override;
  bool Sorted() const override;
  void SetSorted(bool sorted) override;
  int16_t SortKey() const override;
  void SetSortKey(int16_t column) override;
  int32_t SortOrder() const override;
  void SetSortOrder(int32_t order) override;

  // The item last scrolled into view with EnsureVisible, or nullptr.
  ListItem* VisibleItem();

  // Tells `observer` of every later change (nullptr: no one). See
  // control_observer.h.
  void SetObserver(ControlObserver* observer);

  struct State;

 private:
  std::unique_ptr<State> state_;
};

}  // namespace veld

#endif  // VELD_CONTROLS_HEADLESS_LIST_VIEW_H_
