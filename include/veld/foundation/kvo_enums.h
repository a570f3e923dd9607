// Enumerations published in the library's interface.
#ifndef VELD_FOUNDATION_KVO_ENUMS_H_
#define VELD_FOUNDATION_KVO_ENUMS_H_

#include <cstdint>

namespace veld {

// Text forms of a new GUID (KvoUtils::KvoGenerateGUID).
enum KvoGuidFormatEnum : int32_t {
  // No GUID: the result is "".
  KVO_GUID_FORMAT_UNKNOWN = -1,
  // "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}", 38 characters.
  KVO_GUID_FORMAT_GENERAL = 0,
  // The same 32 hex digits without braces and dashes. The mixed case of the
  // name is the interface's own and callers use it as it stands.
  Kvo_GUID_FORMAT_PUREDATA = 1,
};

// Modes of a data item in a caller's form: new, edit, view. Published for
// callers; no member of the library takes it.
enum KvoDataItemOpModeEnum : int32_t {
  KVO_DIOPMODE_UNKNOWN = -1,
  KVO_DIOPMODE_NEW = 0,
  KVO_DIOPMODE_EDIT = 1,
  KVO_DIOPMODE_VIEW = 2,
};

}  // namespace veld

#endif  // VELD_FOUNDATION_KVO_ENUMS_H_
