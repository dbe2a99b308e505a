#pragma once

#include <QAccessibleActionInterface>
#include <QAccessibleInterface>
#include <QAccessibleValueInterface>
#include <QPointer>
#include <QRect>
#include <QStringList>
#include <QWidget>

namespace velmora {

/// What a screen reader sees of something that a canvas paints: a child without children or a widget of its
/// own. What derives tells its role, texts, frame and actions, and may be a `QAccessibleValueInterface`, too.
template <class Canvas>
class AccessiblePart : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  bool isValid() const override { return !canvas_.isNull(); }
  QObject* object() const final { return nullptr; }
  QWindow* window() const final {
    const QAccessibleInterface* canvas = parent();
    return canvas ? canvas->window() : nullptr;
  }
  QAccessibleInterface* parent() const final { return QAccessible::queryAccessibleInterface(canvas_); }
  QAccessibleInterface* childAt(int, int) const final { return nullptr; }
  QAccessibleInterface* child(int) const final { return nullptr; }
  int childCount() const final { return 0; }
  int indexOfChild(const QAccessibleInterface*) const final { return -1; }
  void setText(QAccessible::Text, const QString&) final {}
  QStringList keyBindingsForAction(const QString&) const override { return {}; }

  QRect rect() const final {
    const QRect place = isValid() ? frame().toAlignedRect() : QRect();
    return place.isNull() ? place : QRect(canvas_->mapToGlobal(place.topLeft()), place.size());
  }
  QAccessible::State state() const override {
    QAccessible::State state;
    state.invalid = !isValid();
    if (state.invalid) return state;
    state.disabled = !canvas_->isEnabled();
    state.invisible = !canvas_->isVisible();
    state.focusable = true;
    return state;
  }
  void* interface_cast(QAccessible::InterfaceType type) final {
    if (type == QAccessible::ActionInterface) return static_cast<QAccessibleActionInterface*>(this);
    return type == QAccessible::ValueInterface ? dynamic_cast<QAccessibleValueInterface*>(this) : nullptr;
  }

 protected:
  explicit AccessiblePart(Canvas* canvas) : canvas_(canvas) {}

  Canvas* canvas() const { return canvas_; }
  /// Where it lies on the canvas; asked for while it is valid.
  virtual QRectF frame() const = 0;

 private:
  const QPointer<Canvas> canvas_;
};

/// From now on screen readers see each `Widget` of the process as `Seen` tells it; more calls do nothing.
template <class Widget, class Seen>
void installAccessible() {
  const auto make = [](const QString&, QObject* object) -> QAccessibleInterface* {
    auto* const widget = dynamic_cast<Widget*>(object);
    return widget ? new Seen(widget) : nullptr;
  };
  [[maybe_unused]] static const bool isInstalled = (QAccessible::installFactory(make), true);
}

}  // namespace velmora
