#pragma once

#include <QAccessible>
#include <QString>
#include <functional>
#include <optional>

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
  std::optional<Adjustment> adjustment{};

  /// The functions are called as long as the widget lives. Once for a widget.
  static void attach(QWidget& widget, Spoken spoken);

  /// Tells a new value if the widget has the focus, at most ten times a second; the last one always comes
  /// through.
  static void tellValue(QWidget& widget);
};

}  // namespace velmora
