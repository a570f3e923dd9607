// The control helper's data source, row removal and item keys.
#include "veld/controls/kvo_data_ctrl_helper.h"

#include "controls/ctrl_messages.h"
#include "controls/data_rows.h"
#include "foundation/frame_settings.h"
#include "foundation/xml_utils.h"

namespace veld {

namespace messages = ctrl_messages;
using controls_internal::kActiveRow;
using controls_internal::kFirstDataRows;

KvoDataCtrlHelper::KvoDataCtrlHelper() : DocumentFrame(kDataCtrlHelperFrame) {}

KvoDataCtrlHelper::~KvoDataCtrlHelper() = default;

bool KvoDataCtrlHelper::LoadXml(const std::string& sDataXml) {
  bool result = false;
  RecordedKeepingLastError([&] {
    if (!m_cXmlDom.LoadXml(sDataXml)) Fail(messages::kLoadXmlFailed);
    result = true;
  });
  return result;
}

bool KvoDataCtrlHelper::LoadFile(const std::string& sXmlFile) {
  bool result = false;
  RecordedKeepingLastError([&] {
    if (!m_cXmlDom.Load(sXmlFile)) Fail(messages::kLoadFileFailed + sXmlFile + ".");
    result = true;
  });
  return result;
}

bool KvoDataCtrlHelper::RemoveDataRow(const std::string& sFilterColName,
                                      const std::string& sFilterColValue,
                                      const std::string& sFilterOperator) {
  bool result = false;
  Recorded([&] {
    const std::string filter =
        std::string(kActiveRow) +
        controls_internal::ColumnMatch(sFilterColName, sFilterOperator, sFilterColValue);
    result =
        RemoveSelectedNodes(m_cXmlDom.AsNode(), std::string(kFirstDataRows) + "[" + filter + "]");
  });
  return result;
}

bool KvoDataCtrlHelper::RemoveDataRowEx(const std::string& sFilterXPath,
                                        const std::string& sFilterColName) {
  bool result = false;
  Recorded([&] {
    // Without a column name there is no blank before "and": the closing
    // parenthesis ends the token, so the expression stays valid.
    const std::string filter = sFilterColName.empty()
                                   ? std::string(kActiveRow) + "and (" + sFilterXPath + ")"
                                   : std::string(kActiveRow) + " and col[@name='" + sFilterColName +
                                         "' and (" + sFilterXPath + ")]";
    result =
        RemoveSelectedNodes(m_cXmlDom.AsNode(), std::string(kFirstDataRows) + "[" + filter + "]");
  });
  return result;
}

std::string KvoDataCtrlHelper::GenerateKeyFromIDString(const std::string& sIDString) {
  return sIDString.empty() ? std::string() : "K" + sIDString;
}

std::string KvoDataCtrlHelper::GetIDStringFromKey(const std::string& sKey) {
  return !sKey.empty() && sKey[0] == 'K' ? sKey.substr(1) : std::string();
}

}  // namespace veld
