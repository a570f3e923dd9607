// The part every Qt adapter shares: a control's changes are collected and
// published to the model and the widget once, at the next turn of the event
// loop (or on Flush), so that a load of a million items costs one update.
#ifndef VELD_QT_DEFERRED_MIRROR_H_
#define VELD_QT_DEFERRED_MIRROR_H_

#include <QMetaObject>
#include <QObject>
#include <QPointer>
#include <cstdint>
#include <memory>
#include <utility>

#include "veld/controls/control_observer.h"
#include "veld/qt/icon_map.h"

namespace veld::qt_internal {

class DeferredMirror : public ControlObserver {
 public:
  void ControlChanged(int32_t changes) override {
    ChangedNow(changes);
    if (pending_ == 0) {
      // The queued call is dropped if the context (the model) goes first.
      QMetaObject::invokeMethod(
          Context(), [this] { Flush(); }, Qt::QueuedConnection);
    }
    pending_ |= changes;
  }

  void Flush() {
    const int32_t changes = std::exchange(pending_, 0);
    if (changes != 0) Publish(changes);
  }

 protected:
  // The object whose lifetime bounds the queued publication.
  virtual QObject* Context() = 0;
  // Told of each change at once, before it is published.
  virtual void ChangedNow(int32_t) {}
  virtual void Publish(int32_t changes) = 0;

 private:
  int32_t pending_ = 0;
};

// The mirror of one control in one widget: the model over the control, the
// widget (the host's, or one of its own that it deletes), and the guard that
// tells what the widget reports while it follows the control from what the
// user does. `Model` has an `icons` member.
template <class Model, class Widget>
class WidgetMirror : public DeferredMirror {
 public:
  WidgetMirror(std::unique_ptr<Model> shown_model, Widget* shown)
      : model(std::move(shown_model)), view(shown) {
    if (view == nullptr) {
      view = new Widget;
      owned_view_ = view;
    }
  }

  ~WidgetMirror() override {
    if (owned_view_ != nullptr) delete owned_view_.data();
  }

  // Starts following `control`, which shows in full at the next publication.
  template <class Control>
  void Follow(Control& control) {
    control.SetObserver(this);
    ControlChanged(kStructure | kState);
  }

  void SetIcons(IconMap icons) {
    model->icons = std::move(icons);
    ControlChanged(kContent);
  }

  std::unique_ptr<Model> model;
  QPointer<Widget> view;  // null once the widget is destroyed
  bool applying = false;

 protected:
  QObject* Context() override { return model.get(); }

  void Publish(int32_t changes) override {
    applying = true;
    Apply(changes);
    applying = false;
  }

  virtual void Apply(int32_t changes) = 0;

 private:
  QPointer<Widget> owned_view_;
};

}  // namespace veld::qt_internal

#endif  // VELD_QT_DEFERRED_MIRROR_H_
