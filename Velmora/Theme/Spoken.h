#pragma once

#include <QAccessible>
#include <QString>
#include <functional>
#include <optional>

class QAbstractButton;
class QWidget;

namespace velmora {

/// What a painted widget tells a screen reader, and lets it do, beyond its accessible name and description.
struct Spoken {
  /// A number that can be set, or moved by a step with the actions Increase and Decrease.
  struct Adjustment {
    std::function<double()> value;
    std::function<void(double)> set;
    double minimum = 0;
    double maximum = 1;
    double step = 1;

    void move(double steps) const { set(value() + steps * step); }
  };

  QAccessible::Role role = QAccessible::StaticText;
  std::function<QString()> value{};
  std::function<void()> press{};
  std::function<bool()> isOn{};  ///< of a switch, which a press toggles
  std::optional<Adjustment> adjustment{};

  /// The functions are called as long as the widget lives. Once for a widget.
  static void attach(QWidget& widget, Spoken spoken);

  /// A checkable button's toggle is a click. By itself it would only change its look, unheard by who listens
  /// to clicks. Once it is known whether it excludes others.
  static void attachToggle(QAbstractButton& button);

  /// From now on a reader that asks a scroll area for a part that has just gone, as scroll bars do, gets
  /// none. The standard interface reads past the end of its list then.
  static void guardScrollAreas();

  /// Tells a new value if the widget has the focus, at most ten times a second; the last one always comes
  /// through.
  static void tellValue(QWidget& widget);
};

}  // namespace velmora
