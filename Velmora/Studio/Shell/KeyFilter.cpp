#include "Velmora/Studio/Shell/KeyFilter.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QTextEdit>
#include <algorithm>
#include <array>

namespace velmora {

namespace {

enum class KeyGroup { press, edit, write, other };
enum class Keeps { never, byTab, always };

constexpr std::array pressKeys{Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter};
constexpr std::array editKeys{Qt::Key_Delete, Qt::Key_Backspace, Qt::Key_Left, Qt::Key_Right,
                              Qt::Key_Up,     Qt::Key_Down,      Qt::Key_Home, Qt::Key_End,
                              Qt::Key_PageUp, Qt::Key_PageDown};

template <class Keys>
bool contains(const Keys& keys, int key) {
  return std::ranges::find(keys, key) != keys.end();
}

KeyGroup groupOf(const QKeyEvent& event) {
  if (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) return KeyGroup::other;
  if (contains(pressKeys, event.key())) return KeyGroup::press;
  if (contains(editKeys, event.key())) return KeyGroup::edit;
  const QString text = event.text();
  return !text.isEmpty() && text.front().isPrint() ? KeyGroup::write : KeyGroup::other;
}

template <class... Widgets>
bool isOneOf(const QWidget& widget) {
  return (qobject_cast<const Widgets*>(&widget) || ...);
}

bool isEditable(const QWidget& widget) {
  const auto* combo = qobject_cast<const QComboBox*>(&widget);
  return combo && combo->isEditable();
}

/// What a kind of widget keeps of each group of keys: the first row that fits.
struct FocusRow {
  bool (*fits)(const QWidget& widget);
  Keeps press;
  Keeps edit;
  Keeps write;
};
constexpr std::array focusRows{
    FocusRow{isOneOf<QLineEdit, QTextEdit, QPlainTextEdit, QAbstractSpinBox, QMenuBar>, Keeps::always,
             Keeps::always, Keeps::always},
    FocusRow{isEditable, Keeps::always, Keeps::always, Keeps::always},
    FocusRow{isOneOf<QAbstractButton, QComboBox>, Keeps::byTab, Keeps::never, Keeps::never},
    FocusRow{isOneOf<QAbstractItemView>, Keeps::byTab, Keeps::always, Keeps::never},
    FocusRow{isOneOf<QAbstractSlider>, Keeps::never, Keeps::always, Keeps::never},
    FocusRow{[](const QWidget& widget) { return widget.property(KeyFilter::keepsEditingKeys).toBool(); },
             Keeps::never, Keeps::always, Keeps::never},
};

Keeps keeps(const QWidget& widget, KeyGroup group) {
  const auto row = std::ranges::find_if(focusRows, [&](const FocusRow& each) { return each.fits(widget); });
  if (row == focusRows.end() || group == KeyGroup::other) return Keeps::never;
  if (group == KeyGroup::press) return row->press;
  return group == KeyGroup::edit ? row->edit : row->write;
}

bool isInDialog(const QWidget* widget) { return widget && isOneOf<QDialog>(*widget->window()); }

}  // namespace

KeyFilter::KeyFilter(const Observed<bool>& isEditingText) : isEditingText_(isEditingText) {
  QApplication::instance()->installEventFilter(this);
}

bool KeyFilter::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::FocusIn:
      noteFocus(watched, *static_cast<QFocusEvent*>(event));
      return false;
    case QEvent::MouseButtonPress:
      notePress(watched);
      return false;
    case QEvent::ShortcutOverride:
      return decide(*static_cast<QKeyEvent*>(event));
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
      return pressWithReturn(watched, *static_cast<QKeyEvent*>(event));
    default:
      return false;
  }
}

void KeyFilter::noteFocus(QObject* watched, const QFocusEvent& event) {
  auto* widget = qobject_cast<QWidget*>(watched);
  const Qt::FocusReason reason = event.reason();
  if (!widget || reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason) return;
  const bool isByTab = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason;
  tabbed_ = isByTab ? widget : nullptr;
}

/// From here on the mouse leads: the focus frame goes with the keys.
void KeyFilter::notePress(QObject* watched) {
  auto* widget = qobject_cast<QWidget*>(watched);
  if (!widget || !tabbed_) return;
  tabbed_->window()->setAttribute(Qt::WA_KeyboardFocusChange, false);
  tabbed_->update();
  tabbed_ = nullptr;
}

/// An accepted override goes to the widget, an ignored one to the menus. A true result keeps the widget from
/// deciding itself. In a dialog the menus hear nothing anyway.
bool KeyFilter::decide(QKeyEvent& event) const {
  const KeyGroup group = groupOf(event);
  if (group == KeyGroup::other || isInDialog(QApplication::focusWidget())) return false;
  const bool isKept = QApplication::activePopupWidget() || isEditingText_() || isKeptByFocus(event);
  if (!isKept && group == KeyGroup::write) return false;
  event.setAccepted(isKept);
  return true;
}

bool KeyFilter::isKeptByFocus(const QKeyEvent& event) const {
  const QWidget* widget = QApplication::focusWidget();
  if (!widget) return false;
  if (groupOf(event) == KeyGroup::press && widget->property(keepsActivationKeys).toBool()) return true;
  const Keeps kept = keeps(*widget, groupOf(event));
  return kept == Keeps::always || (kept == Keeps::byTab && hasFocusByTab(*widget));
}

/// Qt presses buttons and combo boxes with Space alone; Return is to do the same where they keep it. Dialogs
/// have their own use for Return.
bool KeyFilter::pressWithReturn(QObject* watched, const QKeyEvent& event) const {
  const bool isReturn = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
  auto* widget = qobject_cast<QWidget*>(watched);
  if (!isReturn || !widget || !hasFocusByTab(*widget) || groupOf(event) != KeyGroup::press) return false;
  if (!isOneOf<QAbstractButton, QComboBox>(*widget) || isInDialog(widget)) return false;
  QKeyEvent space(event.type(), Qt::Key_Space, Qt::NoModifier, " ", event.isAutoRepeat());
  QCoreApplication::sendEvent(widget, &space);
  return true;
}

}  // namespace velmora
