// HeadlessTreeView: a complete in-memory tree view, for tests, servers and
// command-line tools, and the state a GUI adapter mirrors.
#ifndef VELD_CONTROLS_HEADLESS_TREE_VIEW_H_
#define VELD_CONTROLS_HEADLESS_TREE_VIEW_H_

#include <memory>

#include "veld/controls/control_observer.h"
#include "veld/controls/tree_view.h"
#include "veld/export.h"

namespace veld {

class VELD_EXPORT HeadlessTreeView : public TreeView {
 public:
  HeadlessTreeView();
  ~HeadlessTreeView() override;

  NodeCollection& Nodes() override;
  Node* SelectedItem() override;

  // Tells `observer` of every later change (nullptr: no one). See
  // control_observer.h.
  void SetObserver(ControlObserver* observer);

  struct State;

 private:
  std::unique_ptr<State> state_;
};

}  // namespace veld

#endif  // VELD_CONTROLS_HEADLESS_TREE_VIEW_H_
