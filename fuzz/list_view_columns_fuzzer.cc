// Feeds arbitrary column specs to ListView_InitializeColumns, then loads a
// fixed dataset into the columns it made and sorts by each of them. No
// member may raise; a failure must say why; every cell the list shows is
// non-empty after a load (the helper writes a blank for an empty one), and
// sorting keeps every item.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "veld/controls/headless_list_view.h"
#include "veld/controls/kvo_data_ctrl_helper.h"

#include "fuzz_support.h"

namespace {

using veld_fuzz::Check;

const char kData[] =
    "<dataset><data>"
    "<row><col name=\"_guid_\" value=\"A\"/><col name=\"name\" value=\"Pears\"/><col name=\"qty\" "
    "value=\"2.5\"/><col name=\"day\" value=\"2010-12-19 18:30\"/><col name=\"img\" "
    "value=\"f\"/></row>"
    "<row><col name=\"_guid_\" value=\"B\"/><col name=\"name\" value=\"&lt;x&gt;\"/><col "
    "name=\"qty\" "
    "value=\"-1e3\"/><col name=\"day\" value=\"soon\"/></row>"
    "<row index=\"0\"><col name=\"_guid_\" value=\"C\"/></row>"
    "<row><col name=\"_guid_\" value=\"D\"/><col name=\"qty\" value=\"12345678901\"/></row>"
    "</data></dataset>";

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string spec(reinterpret_cast<const char*>(data), size);
  veld::KvoDataCtrlHelper helper;
  veld::HeadlessListView list;
  if (!helper.ListView_InitializeColumns(&list, spec)) Check(!helper.GetLastError().empty());
  Check(helper.LoadXml(kData));
  const bool loaded = helper.ListView_LoadData(&list);
  if (!loaded) {
    Check(!helper.GetLastError().empty());
    return 0;
  }
  const int32_t columns = list.ColumnHeaders().Count();
  const int32_t items = list.ListItems().Count();
  for (int32_t i = 1; i <= items; ++i) {
    veld::ListItem& item = list.ListItems().Item(veld::Variant(i));
    for (int32_t c = 1; c < columns; ++c) Check(!item.SubItems(c).empty());
  }
  for (int32_t c = 0; c <= columns + 1; ++c) {
    helper.ListView_SortData(&list, c);
    Check(list.ListItems().Count() == items);
  }
  return 0;
}
