// ControlObserver: what a headless control tells a mirror of it, such as a
// GUI adapter, after each change. A control has at most one observer; the
// observer must not change the control from inside ControlChanged.
#ifndef VELD_CONTROLS_CONTROL_OBSERVER_H_
#define VELD_CONTROLS_CONTROL_OBSERVER_H_

#include <cstdint>

#include "veld/export.h"

namespace veld {

class VELD_EXPORT ControlObserver {
 public:
  // Bits of ControlChanged's argument.
  enum Change : int32_t {
    // Elements or columns were added, removed, cleared or reordered, or a
    // column's caption, width or alignment changed.
    kStructure = 1,
    // An element's text, images, colours or indentation changed.
    kContent = 2,
    // The selection, the expanded nodes, the item scrolled into view, the
    // sort settings or a combo's text changed.
    kState = 4,
  };

  virtual ~ControlObserver();
  virtual void ControlChanged(int32_t changes) = 0;
};

}  // namespace veld

#endif  // VELD_CONTROLS_CONTROL_OBSERVER_H_
