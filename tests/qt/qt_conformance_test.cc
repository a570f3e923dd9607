// The conformance suite of the control interfaces over the Qt adapters.
#include <memory>

#include "controls/control_conformance.h"
#include "veld/qt/qt_image_combo.h"
#include "veld/qt/qt_list_view.h"
#include "veld/qt/qt_tree_view.h"

namespace veld::testing {
namespace {

ControlFactory Qt() {
  return {"Qt", [] { return std::make_unique<QtListView>(); },
          [] { return std::make_unique<QtImageCombo>(); },
          [] { return std::make_unique<QtTreeView>(); }};
}

INSTANTIATE_TEST_SUITE_P(Qt, ListViewConformance, ::testing::Values(Qt()), FactoryName);
INSTANTIATE_TEST_SUITE_P(Qt, ImageComboConformance, ::testing::Values(Qt()), FactoryName);
INSTANTIATE_TEST_SUITE_P(Qt, TreeViewConformance, ::testing::Values(Qt()), FactoryName);

}  // namespace
}  // namespace veld::testing
