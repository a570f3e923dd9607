// Drives the image combo members of KvoDataCtrlHelper with arbitrary
// documents and arguments: the input is split at 0x01 bytes into the
// document, the key, parent, text, second text, tag and filter fields, the
// filter value and operator, and the texts the selectors look for. No member
// may raise; a failed member says why; items are keyed "K" + an id, never
// have an empty text, and are indented at most one level below an earlier
// item.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "veld/controls/headless_image_combo.h"
#include "veld/controls/kvo_data_ctrl_helper.h"

#include "fuzz_support.h"

using veld_fuzz::Check;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::vector<std::string> parts = veld_fuzz::SplitInput(input, '\x01', 12);

  veld::KvoDataCtrlHelper helper;
  helper.LoadXml(parts[0]);
  veld::HeadlessImageCombo combo;
  for (const bool hierarchical : {false, true}) {
    const bool loaded =
        hierarchical
            ? helper.ImageCombo_LoadHierData(&combo, parts[1], parts[2], parts[3], parts[4],
                                             parts[5], veld::Variant(parts[9]), parts[6], parts[7])
            : helper.ImageCombo_LoadData(&combo, parts[1], parts[3], parts[4], parts[5],
                                         veld::Variant(parts[9]), parts[6], parts[7],
                                         parts[8].empty() ? "=" : parts[8]);
    if (!loaded) Check(!helper.GetLastError().empty());
    veld::ComboItemCollection& items = combo.ComboItems();
    int previous_max = -1;
    for (int32_t i = 1; i <= items.Count(); ++i) {
      veld::ComboItem& item = items.Item(veld::Variant(i));
      Check(item.Key().size() > 1 && item.Key()[0] == 'K');
      Check(!item.Text().empty());
      Check(item.Indentation() >= 0 && item.Indentation() <= previous_max + 1);
      if (!hierarchical) Check(item.Indentation() == 0);
      previous_max = std::max<int>(previous_max, item.Indentation());
    }
    if (loaded && items.Count() > 0) Check(combo.SelectedItem() != nullptr);
  }
  helper.ImageCombo_SelectItemByText(&combo, parts[10]);
  helper.ImageCombo_SelectItemByTag(&combo, parts[11]);
  if (!helper.ImageCombo_SelectItemByIDString(&combo, parts[9]))
    Check(helper.GetLastError() == "Specified item not found in the list." && combo.Text().empty());
  veld::Variant text1, text2, id;
  if (helper.ImageCombo_GetSelectedItemText(&combo, &text1, &text2)) {
    Check(helper.ImageCombo_GetSelectedItemIDString(&combo, id));
  } else {
    Check(helper.GetLastError() == "No item selected.");
  }
  return 0;
}
