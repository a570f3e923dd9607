// The control helper's image combo members.
#include "controls/ctrl_messages.h"
#include "controls/data_rows.h"
#include "runtime/text.h"
#include "veld/controls/image_combo.h"
#include "veld/controls/kvo_data_ctrl_helper.h"
#include "veld/runtime/automation_error.h"
#include "veld/xml/xml_node_list.h"

namespace veld {

namespace messages = ctrl_messages;
using controls_internal::ReadCol;

namespace {

ImageCombo& RequireCombo(Control* control) {
  auto* combo = dynamic_cast<ImageCombo*>(control);
  if (combo == nullptr) RaiseError(errnum::kCheckFailed, messages::kImageComboRequired);
  return *combo;
}

struct ComboFields {
  std::string key, parent, text, text2, tag, filter;
};

// Adds one item per qualifying row. `hierarchical` indents by the parent
// item's level and filters by equality.
void LoadItems(const XmlDocument& data, ImageCombo& combo, ComboFields f,
               const std::string& filter_value, const std::string& filter_operator,
               bool hierarchical) {
  ComboItemCollection& items = combo.ComboItems();
  items.Clear();
  combo.SetText("");
  if (hierarchical) {
    controls_internal::MatchFieldNamesUpper(
        data, {&f.key, &f.parent, &f.text, &f.text2, &f.tag, &f.filter});
  } else {
    controls_internal::MatchFieldNamesUpper(data, {&f.key, &f.text, &f.text2, &f.tag, &f.filter});
  }
  std::string filter = controls_internal::kActiveRow;
  if (!f.filter.empty())
    filter += controls_internal::ColumnMatch(f.filter, filter_operator, filter_value);
  XmlNodeList rows =
      data.SelectNodes(std::string(controls_internal::kFirstDataRows) + "[" + filter + "]");

  std::string key, parent, text, text2, tag;
  const int32_t count = rows.Length();
  for (int32_t i = 0; i < count; ++i) {
    const XmlNode row = rows.Item(i);
    ReadCol(row, f.key, key);
    if (hierarchical) ReadCol(row, f.parent, parent);
    ReadCol(row, f.text, text);
    if (!f.text2.empty() && ReadCol(row, f.text2, text2)) {
      text += "\r" + std::string(Trim(text).empty() ? "" : " ") + text2;
    }
    tag.clear();
    if (!f.tag.empty()) ReadCol(row, f.tag, tag);
    if (key.empty() || text.empty()) continue;
    int32_t indentation = 0;
    if (hierarchical) {
      const std::string parent_key = KvoDataCtrlHelper::GenerateKeyFromIDString(parent);
      if (!parent_key.empty()) {
        // The parent is found through the combo's key index; a parent not
        // added (yet) leaves the item at level 0.
        try {
          indentation = items.Item(Variant(parent_key)).Indentation() + 1;
        } catch (...) {
        }
      }
    }
    ComboItem& item =
        hierarchical
            ? items.Add(Variant::Missing(),
                        Variant(KvoDataCtrlHelper::GenerateKeyFromIDString(key)), Variant(text),
                        Variant::Missing(), Variant::Missing(), Variant(indentation))
            : items.Add(Variant::Missing(),
                        Variant(KvoDataCtrlHelper::GenerateKeyFromIDString(key)), Variant(text));
    item.SetTag(tag);
  }
}

// After a load, with failures ignored: the named item, else the first.
void SelectAfterLoad(ImageCombo& combo, const Variant& selected) {
  ComboItemCollection& items = combo.ComboItems();
  if (items.Count() == 0) return;
  try {
    items.Item(selected).SetSelected(true);
  } catch (...) {
  }
  try {
    if (combo.SelectedItem() == nullptr) items.Item(Variant(int32_t{1})).SetSelected(true);
  } catch (...) {
  }
}

// The first item whose text or tag matches, trimmed and without regard to
// case; nullptr when none does.
ComboItem* FindByText(ImageCombo& combo, const std::string& wanted, bool by_tag) {
  const std::string target = LCase(Trim(wanted));
  ComboItemCollection& items = combo.ComboItems();
  const int32_t count = items.Count();
  for (int32_t i = 1; i <= count; ++i) {
    ComboItem& item = items.Item(Variant(i));
    if (LCase(Trim(by_tag ? item.Tag() : item.Text())) == target) return &item;
  }
  return nullptr;
}

}  // namespace

bool KvoDataCtrlHelper::ImageCombo_LoadData(
    Control* cImgComboCtrl, const std::string& sKeyFieldName, const std::string& sTextFieldName,
    const std::string& sTextFieldName2, const std::string& sTagFieldName,
    const Variant& vtSelectedItem, const std::string& sFilterFieldName,
    const std::string& sFilterValue, const std::string& sFilterOperator) {
  bool result = false;
  Recorded([&] {
    ImageCombo& combo = RequireCombo(cImgComboCtrl);
    LoadItems(m_cXmlDom, combo,
              {sKeyFieldName, "", sTextFieldName, sTextFieldName2, sTagFieldName, sFilterFieldName},
              sFilterValue, sFilterOperator, false);
    SelectAfterLoad(combo, vtSelectedItem);
    try {
      if (combo.ComboItems().Count() > 0) combo.Refresh();
    } catch (...) {
    }
    result = true;
  });
  return result;
}

bool KvoDataCtrlHelper::ImageCombo_LoadHierData(
    Control* cImgComboCtrl, const std::string& sKeyFieldName,
    const std::string& sParentKeyFieldName, const std::string& sTextFieldName,
    const std::string& sTextFieldName2, const std::string& sTagFieldName,
    const Variant& vtSelectedItem, const std::string& sFilterFieldName,
    const std::string& sFilterValue) {
  bool result = false;
  Recorded([&] {
    ImageCombo& combo = RequireCombo(cImgComboCtrl);
    LoadItems(m_cXmlDom, combo,
              {sKeyFieldName, sParentKeyFieldName, sTextFieldName, sTextFieldName2, sTagFieldName,
               sFilterFieldName},
              sFilterValue, "=", true);
    SelectAfterLoad(combo, vtSelectedItem);
    result = true;
  });
  return result;
}

bool KvoDataCtrlHelper::ImageCombo_SelectItemByText(Control* cImgComboCtrl,
                                                    const std::string& sText) {
  bool result = false;
  Recorded([&] {
    ImageCombo& combo = RequireCombo(cImgComboCtrl);
    combo.SetSelectedItem(nullptr);
    if (ComboItem* item = FindByText(combo, sText, false)) {
      item->SetSelected(true);
      combo.Refresh();
      result = true;
    }
  });
  return result;
}

bool KvoDataCtrlHelper::ImageCombo_SelectItemByTag(Control* cImgComboCtrl,
                                                   const std::string& sTag) {
  bool result = false;
  Recorded([&] {
    ImageCombo& combo = RequireCombo(cImgComboCtrl);
    combo.SetSelectedItem(nullptr);
    if (ComboItem* item = FindByText(combo, sTag, true)) {
      item->SetSelected(true);
      combo.Refresh();
      result = true;
    }
  });
  return result;
}

bool KvoDataCtrlHelper::ImageCombo_SelectItemByIDString(Control* cImgComboCtrl,
                                                        const std::string& sIDString) {
  bool result = false;
  Recorded([&] {
    ImageCombo& combo = RequireCombo(cImgComboCtrl);
    const std::string key = GenerateKeyFromIDString(sIDString);
    ComboItem* selected = combo.SelectedItem();
    if (selected != nullptr && selected->Key() == key) {
      result = true;
      return;
    }
    ComboItemCollection& items = combo.ComboItems();
    ComboItem* found = nullptr;
    try {
      found = &items.Item(Variant(key));
    } catch (...) {
    }
    if (found == nullptr && key.empty()) {
      // No id: the first item without a key, if there is one.
      const int32_t count = items.Count();
      for (int32_t i = 1; i <= count && found == nullptr; ++i) {
        ComboItem& item = items.Item(Variant(i));
        if (item.Key().empty()) found = &item;
      }
      if (found != nullptr) found->SetSelected(true);
      combo.Refresh();
      result = true;
      return;
    }
    if (found == nullptr) {
      combo.SetText("");
      Fail(messages::kItemNotFound);
    }
    found->SetSelected(true);
    combo.Refresh();
    result = true;
  });
  return result;
}

bool KvoDataCtrlHelper::ImageCombo_GetSelectedItemIDString(Control* cImgComboCtrl,
                                                           Variant& sIDString) {
  bool result = false;
  Recorded([&] {
    ComboItem* selected = RequireCombo(cImgComboCtrl).SelectedItem();
    if (selected == nullptr) Fail(messages::kNoItemSelected);
    sIDString = Variant(GetIDStringFromKey(selected->Key()));
    result = true;
  });
  return result;
}

bool KvoDataCtrlHelper::ImageCombo_GetSelectedItemTag(Control* cImgComboCtrl, Variant& sTag) {
  bool result = false;
  Recorded([&] {
    ComboItem* selected = RequireCombo(cImgComboCtrl).SelectedItem();
    if (selected == nullptr) Fail(messages::kNoItemSelected);
    sTag = Variant(selected->Tag());
    result = true;
  });
  return result;
}

bool KvoDataCtrlHelper::ImageCombo_GetSelectedItemText(Control* cImgComboCtrl, Variant* sText1,
                                                       Variant* sText2) {
  bool result = false;
  Recorded([&] {
    if (sText1 != nullptr) *sText1 = Variant("");
    if (sText2 != nullptr) *sText2 = Variant("");
    ComboItem* selected = RequireCombo(cImgComboCtrl).SelectedItem();
    if (selected == nullptr) Fail(messages::kNoItemSelected);
    const std::string text = selected->Text();
    const size_t cr = text.find('\r');
    if (cr != std::string::npos) {
      if (sText1 != nullptr) *sText1 = Variant(Trim(text.substr(0, cr)));
      if (sText2 != nullptr) *sText2 = Variant(Trim(text.substr(cr + 1)));
    } else if (sText1 != nullptr) {
      *sText1 = Variant(text);
    }
    result = true;
  });
  return result;
}

}  // namespace veld
