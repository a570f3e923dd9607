// The conformance suite of the control interfaces, written once and run
// against every implementation: each implementation instantiates it with a
// factory for its three controls (see headless_conformance_test.cc).
#ifndef VELD_TESTS_CONTROLS_CONTROL_CONFORMANCE_H_
#define VELD_TESTS_CONTROLS_CONTROL_CONFORMANCE_H_

#include <functional>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "veld/controls/image_combo.h"
#include "veld/controls/list_view.h"
#include "veld/controls/tree_view.h"

namespace veld::testing {

struct ControlFactory {
  std::string name;
  std::function<std::unique_ptr<ListView>()> list_view;
  std::function<std::unique_ptr<ImageCombo>()> image_combo;
  std::function<std::unique_ptr<TreeView>()> tree_view;
};

inline std::string FactoryName(const ::testing::TestParamInfo<ControlFactory>& info) {
  return info.param.name;
}

class ListViewConformance : public ::testing::TestWithParam<ControlFactory> {};
class ImageComboConformance : public ::testing::TestWithParam<ControlFactory> {};
class TreeViewConformance : public ::testing::TestWithParam<ControlFactory> {};

}  // namespace veld::testing

#endif  // VELD_TESTS_CONTROLS_CONTROL_CONFORMANCE_H_
