// QtImageCombo: an ImageCombo shown in an editable QComboBox.
//
// It is a HeadlessImageCombo plus a list model over its items: texts, images
// through the icon map, and each item's indentation (IndentationRole, drawn
// by the adapter's delegate as 10 pixels per level in the drop-down list).
// The edit field shows the combo's Text, which may differ from the selected
// item's text; the drop-down shows the items. The view follows the control
// at the next turn of the Qt event loop, or at once on Sync(). Choosing an
// item in the drop-down selects it; typing in the field sets Text.
//
// Edge cases: the combo box may be destroyed before the adapter (the adapter
// goes on headless); an image key the icon map does not have shows no image.
#ifndef VELD_QT_QT_IMAGE_COMBO_H_
#define VELD_QT_QT_IMAGE_COMBO_H_

#include <Qt>
#include <memory>

#include "veld/controls/headless_image_combo.h"
#include "veld/qt/export.h"
#include "veld/qt/icon_map.h"

class QAbstractItemModel;
class QComboBox;

namespace veld {

class VELD_QT_EXPORT QtImageCombo : public HeadlessImageCombo {
 public:
  // The model role that holds an item's indentation level.
  static constexpr int IndentationRole = Qt::UserRole + 1;

  // Shows the combo in `combo` (not owned; made editable); nullptr makes a
  // combo box of its own, which the adapter deletes.
  explicit QtImageCombo(QComboBox* combo = nullptr);
  ~QtImageCombo() override;

  QComboBox* View() const;
  QAbstractItemModel* Model() const;
  void SetIcons(IconMap icons);
  void Sync();

  struct Mirror;

 private:
  std::unique_ptr<Mirror> mirror_;
};

}  // namespace veld

#endif  // VELD_QT_QT_IMAGE_COMBO_H_
