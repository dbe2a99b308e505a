#pragma once

#include <utility>

#include "Velmora/Theme/CommandButton.h"

namespace velmora {

/// A command of the header or of a sheet, whose ground is almost as high as what can be pressed.
class ShellButton : public CommandButton {
 public:
  ShellButton(const QString& text, QString symbol, Look look, QWidget* parent = nullptr)
      : CommandButton(text, std::move(symbol), high(look), parent) {}
  explicit ShellButton(const QString& text, QString symbol = {}, QWidget* parent = nullptr)
      : ShellButton(text, std::move(symbol), Look(), parent) {}

 private:
  static Look high(Look look) {
    look.groundHeight = 40;
    return look;
  }
};

}  // namespace velmora
