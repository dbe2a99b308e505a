#pragma once

#include <QLabel>
#include <QVariantAnimation>
#include <QWidget>
#include <functional>

#include "Velmora/Theme/IconButton.h"

namespace velmora {

/// The one message line over the top of its parent, at most 560 wide; slides in and out.
class ErrorBanner : public QWidget {
 public:
  static constexpr int maximumWidth = 560;
  static constexpr int margin = 8;  ///< to the top and the sides
  static constexpr int milliseconds = 250;

  explicit ErrorBanner(QWidget& parent);

  std::function<void()> onDismiss;

  /// An empty message takes the banner away.
  void setMessage(const QString& message);

  /// To its place in the parent; for the parent's resizes.
  void place();

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void move(double target);
  void setPresence(double presence);

  QLabel message_;
  IconButton dismiss_;
  QVariantAnimation animation_;
  double presence_ = 0;  // 0 above the parent's edge, 1 in its place
};

}  // namespace velmora
