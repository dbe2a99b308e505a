#pragma once

#include <QAbstractButton>
#include <QMenu>
#include <QString>
#include <functional>

namespace velmora {

/// Opens a menu under its button, filled anew each time. For a screen reader the button is one that opens a
/// menu.
class MenuOpener {
 public:
  using Fill = std::function<void(QMenu&)>;

  /// Once for a button, whose member it is. `value` is what a screen reader hears as chosen.
  MenuOpener(QAbstractButton& button, Fill fill, std::function<QString()> value = {});

  bool isOpen() const { return menu_.isVisible(); }

 private:
  void open();

  QAbstractButton& button_;
  const Fill fill_;
  QMenu menu_;
};

}  // namespace velmora
