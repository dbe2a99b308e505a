#include "Velmora/Theme/Spoken.h"

#include <QAbstractButton>
#include <QAccessibleWidget>
#include <QTimer>
#include <QWidget>
#include <utility>

namespace velmora {
namespace {

/// Hangs on the widget as a child and goes with it.
class Attachment final : public QObject {
 public:
  Attachment(QWidget& widget, Spoken what) : QObject(&widget), spoken(std::move(what)), widget_(widget) {
    pause_.setSingleShot(true);
    pause_.setInterval(100);
    connect(&pause_, &QTimer::timeout, this, [this] {
      if (std::exchange(isWaiting_, false)) tellValue();
    });
  }

  void tellValue() {
    if (!widget_.hasFocus() || !spoken.adjustment) return;
    if (pause_.isActive()) {
      isWaiting_ = true;
      return;
    }
    QAccessibleValueChangeEvent event(&widget_, spoken.adjustment->value());
    QAccessible::updateAccessibility(&event);
    pause_.start();
  }

  const Spoken spoken;

 private:
  QWidget& widget_;
  QTimer pause_;
  bool isWaiting_ = false;
};

Attachment* attachmentOf(const QObject& object) {
  for (QObject* const child : object.children()) {
    if (auto* const attachment = dynamic_cast<Attachment*>(child)) return attachment;
  }
  return nullptr;
}

class SpokenWidget final : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
  SpokenWidget(QWidget& widget, const Spoken& spoken)
      : QAccessibleWidget(&widget, spoken.role), spoken_(spoken) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type != QAccessible::ValueInterface) return QAccessibleWidget::interface_cast(type);
    return spoken_.adjustment ? static_cast<QAccessibleValueInterface*>(this) : nullptr;
  }

  /// The bridge to the screen readers hands on numbers only: a value in words stands in the description, too.
  QString text(QAccessible::Text kind) const override {
    if (!spoken_.value) return QAccessibleWidget::text(kind);
    if (kind == QAccessible::Value) return spoken_.value();
    if (kind != QAccessible::Description) return QAccessibleWidget::text(kind);
    const QString description = QAccessibleWidget::text(kind);
    const bool saysMore = !description.isEmpty() && description != QAccessibleWidget::text(QAccessible::Name);
    return saysMore ? spoken_.value() + ". " + description : spoken_.value();
  }

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.checkable = static_cast<bool>(spoken_.isOn);
    state.checked = spoken_.isOn && spoken_.isOn();
    return state;
  }

  QStringList actionNames() const override {
    if (!widget()->isEnabled()) return {};
    QStringList names = QAccessibleWidget::actionNames();
    if (spoken_.press) names.prepend(pressName());
    if (spoken_.adjustment) names << increaseAction() << decreaseAction();
    return names;
  }

  void doAction(const QString& name) override {
    if (!actionNames().contains(name)) return;
    if (name == pressName()) {
      spoken_.press();
    } else if (name == increaseAction()) {
      spoken_.adjustment->move(1);
    } else if (name == decreaseAction()) {
      spoken_.adjustment->move(-1);
    } else {
      QAccessibleWidget::doAction(name);
    }
  }

  QVariant currentValue() const override { return spoken_.adjustment->value(); }
  void setCurrentValue(const QVariant& value) override { spoken_.adjustment->set(value.toDouble()); }
  QVariant minimumValue() const override { return spoken_.adjustment->minimum; }
  QVariant maximumValue() const override { return spoken_.adjustment->maximum; }
  QVariant minimumStepSize() const override { return spoken_.adjustment->step; }

 private:
  const QString& pressName() const { return spoken_.isOn ? toggleAction() : pressAction(); }

  const Spoken& spoken_;  // the attachment's, which outlives every interface of its widget
};

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
  auto* const widget = qobject_cast<QWidget*>(object);
  const Attachment* const attachment = widget ? attachmentOf(*widget) : nullptr;
  return attachment ? new SpokenWidget(*widget, attachment->spoken) : nullptr;
}

/// Asked for the names of the object's classes, from the most special one to the first that is known.
QAccessibleInterface* makeScrollArea(const QString& className, QObject* object) {
  if (className != "QScrollArea" && className != "QAbstractScrollArea") return nullptr;
  return new QAccessibleWidget(qobject_cast<QWidget*>(object), QAccessible::Client);
}

/// Setting a name before has already made, and kept, the standard interface.
void dropEarlierInterface(QWidget& widget) {
  auto* const known = QAccessible::queryAccessibleInterface(&widget);
  if (!dynamic_cast<SpokenWidget*>(known))
    QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(known));
}

}  // namespace

void Spoken::attach(QWidget& widget, Spoken spoken) {
  static const bool isInstalled = (QAccessible::installFactory(makeInterface), true);
  Q_UNUSED(isInstalled)
  new Attachment(widget, std::move(spoken));
  dropEarlierInterface(widget);
}

void Spoken::attachToggle(QAbstractButton& button) {
  attach(button, {.role = button.autoExclusive() ? QAccessible::RadioButton : QAccessible::CheckBox,
                  .press = [&button] { button.click(); },
                  .isOn = [&button] { return button.isChecked(); }});
}

void Spoken::guardScrollAreas() { QAccessible::installFactory(makeScrollArea); }

void Spoken::tellValue(QWidget& widget) {
  if (Attachment* const attachment = attachmentOf(widget)) attachment->tellValue();
}

}  // namespace velmora
