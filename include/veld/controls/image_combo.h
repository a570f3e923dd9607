// ImageCombo: a drop-down list whose items carry a key, a text, an
// indentation level and a tag. See control.h for the rules every
// implementation keeps; in addition, selecting an item sets the control's
// Text to the item's text.
#ifndef VELD_CONTROLS_IMAGE_COMBO_H_
#define VELD_CONTROLS_IMAGE_COMBO_H_

#include <cstdint>
#include <string>

#include "veld/controls/control.h"
#include "veld/export.h"
#include "veld/runtime/variant.h"

namespace veld {

class VELD_EXPORT ComboItem {
 public:
  virtual ~ComboItem();
  virtual int32_t Index() const = 0;
  virtual std::string Key() const = 0;
  virtual void SetKey(const std::string& key) = 0;
  virtual std::string Text() const = 0;
  virtual void SetText(const std::string& text) = 0;
  virtual std::string Tag() const = 0;
  virtual void SetTag(const std::string& tag) = 0;
  virtual int16_t Indentation() const = 0;
  virtual void SetIndentation(int16_t level) = 0;
  virtual std::string Image() const = 0;
  virtual void SetImage(const std::string& key) = 0;
  virtual std::string SelImage() const = 0;
  virtual void SetSelImage(const std::string& key) = 0;
  virtual bool Selected() const = 0;
  virtual void SetSelected(bool selected) = 0;
};

class VELD_EXPORT ComboItemCollection {
 public:
  virtual ~ComboItemCollection();
  virtual int32_t Count() const = 0;
  virtual ComboItem& Item(const Variant& vIndexKey) = 0;
  virtual ComboItem& Add(const Variant& Index = Variant::Missing(),
                         const Variant& Key = Variant::Missing(),
                         const Variant& Text = Variant::Missing(),
                         const Variant& Image = Variant::Missing(),
                         const Variant& SelImage = Variant::Missing(),
                         const Variant& Indentation = Variant::Missing()) = 0;
  virtual void Remove(const Variant& vIndexKey) = 0;
  virtual void Clear() = 0;
};

class VELD_EXPORT ImageCombo : public Control {
 public:
  virtual ComboItemCollection& ComboItems() = 0;
  virtual std::string Text() const = 0;
  virtual void SetText(const std::string& text) = 0;
  // nullptr when nothing is selected.
  virtual ComboItem* SelectedItem() = 0;
  // nullptr selects nothing (the text stays).
  virtual void SetSelectedItem(ComboItem* item) = 0;
  virtual void Refresh() = 0;
};

}  // namespace veld

#endif  // VELD_CONTROLS_IMAGE_COMBO_H_
