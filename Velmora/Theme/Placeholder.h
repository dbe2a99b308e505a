#pragma once

#include <QString>
#include <QWidget>

namespace velmora {

/// What stands in a view's place while there is nothing to show: a few words in the middle, and a way on.
class Placeholder : public QWidget {
 public:
  struct Words {
    QString symbol{};
    QString title{};
    QString text{};
  };

  /// The way on is a button or so, which the placeholder then owns; null for none.
  explicit Placeholder(const Words& words, QWidget* wayOn = nullptr, QWidget* parent = nullptr);
};

}  // namespace velmora
