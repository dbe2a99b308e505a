#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

#include "Velmora/Model/Observed.h"

class QFocusEvent;
class QKeyEvent;

namespace velmora {

/// Shares the plain keys of the whole application between the focused widget and the menus.
///
/// Text fields keep all of them. A button, combo box or list that got its focus by Tab keeps Space and
/// Return, any other widget while its property "keepsActivationKeys" is true. Lists, sliders, dials and
/// widgets whose property "keepsEditingKeys" is true keep Delete and the keys that move. An open menu or
/// popover, or a set `isEditingText`, leaves the menus nothing. All else is theirs, even where Qt would let
/// the widget claim it.
class KeyFilter : public QObject {
 public:
  static constexpr auto keepsEditingKeys = "keepsEditingKeys";
  static constexpr auto keepsActivationKeys = "keepsActivationKeys";

  /// Filters as long as it lives.
  explicit KeyFilter(const Observed<bool>& isEditingText);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void noteFocus(QObject* watched, const QFocusEvent& event);
  void notePress(QObject* watched);
  bool decide(QKeyEvent& event) const;
  bool isKeptByFocus(const QKeyEvent& event) const;
  bool pressWithReturn(QObject* watched, const QKeyEvent& event) const;
  bool hasFocusByTab(const QWidget& widget) const { return tabbed_ == &widget; }

  const Observed<bool>& isEditingText_;
  QPointer<QWidget> tabbed_;  // got its focus by Tab, and no mouse button was pressed since
};

}  // namespace velmora
