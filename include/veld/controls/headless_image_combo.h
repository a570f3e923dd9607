// HeadlessImageCombo: a complete in-memory image combo, for tests, servers
// and command-line tools, and the state a GUI adapter mirrors.
#ifndef VELD_CONTROLS_HEADLESS_IMAGE_COMBO_H_
#define VELD_CONTROLS_HEADLESS_IMAGE_COMBO_H_

#include <cstdint>
#include <memory>
#include <string>

#include "veld/controls/control_observer.h"
#include "veld/controls/image_combo.h"
#include "veld/export.h"

namespace veld {

class VELD_EXPORT HeadlessImageCombo : public ImageCombo {
 public:
  HeadlessImageCombo();
  ~HeadlessImageCombo() override;

  ComboItemCollection& ComboItems() override;
  std::string Text() const override;
  void SetText(const std::string& text) override;
  ComboItem* SelectedItem() override;
  void SetSelectedItem(ComboItem* item) override;
  // Has no visible effect headless; counted, so that callers can tell.
  void Refresh() override;
  int32_t RefreshCount() const;

  // Tells `observer` of every later change (nullptr: no one). See
  // control_observer.h.
  void SetObserver(ControlObserver* observer);

  struct State;

 private:
  std::unique_ptr<State> state_;
};

}  // namespace veld

#endif  // VELD_CONTROLS_HEADLESS_IMAGE_COMBO_H_
