#pragma once

#include <utility>

#include "Velmora/Theme/CommandButton.h"

namespace velmora {

/// A command of a header or of a sheet, whose ground is almost as high as what can be pressed.
class TallButton : public CommandButton {
 public:
  TallButton(const QString& text, QString symbol, Look look, QWidget* parent = nullptr)
      : CommandButton(text, std::move(symbol), high(look), parent) {}
  explicit TallButton(const QString& text, QString symbol = {}, QWidget* parent = nullptr)
      : TallButton(text, std::move(symbol), Look(), parent) {}

 private:
  static Look high(Look look) {
    look.groundHeight = 40;
    return look;
  }
};

}  // namespace velmora
