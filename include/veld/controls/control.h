// Control: the base of the controls that KvoDataCtrlHelper fills, and the
// errors their collections raise.
//
// The control interfaces (list_view.h, image_combo.h, tree_view.h) follow the
// object models of the classic common controls, so that code using them reads
// like code written against those controls. Implementations: the headless
// controls of this directory, and GUI adapters that mirror them.
//
// Rules every implementation keeps:
//   - Item(v): a number is a 1-based position (35600 when out of range), a
//     string an exact, case-sensitive key (35601 when unknown); Empty, Null or
//     Missing raise 13 "Type mismatch".
//   - Keys: "" or Missing means no key. A key is unique in its collection
//     (35602) and is not numeric text (35603), whether given to Add or to
//     SetKey.
//   - A reference returned by Item, Add, SelectedItem and the like stays
//     valid until that element is removed or its collection cleared.
//   - A property value out of range (an alignment, a sort order) raises 380
//     "Invalid property value".
#ifndef VELD_CONTROLS_CONTROL_H_
#define VELD_CONTROLS_CONTROL_H_

#include <cstdint>

#include "veld/export.h"

namespace veld {

class VELD_EXPORT Control {
 public:
  Control() = default;
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;
  virtual ~Control();
};

// Errors raised by control collections, as AutomationError.
namespace ctlerr {
inline constexpr int32_t kIndexOutOfBounds = 35600;    // "Index out of bounds"
inline constexpr int32_t kElementNotFound = 35601;     // "Element not found"
inline constexpr int32_t kKeyNotUnique = 35602;        // "Key is not unique in collection"
inline constexpr int32_t kInvalidKey = 35603;          // "Invalid key"
inline constexpr int32_t kInvalidPropertyValue = 380;  // "Invalid property value"
}  // namespace ctlerr

}  // namespace veld

#endif  // VELD_CONTROLS_CONTROL_H_
