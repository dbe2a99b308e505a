#pragma once

#include <QString>
#include <QUrl>
#include <functional>
#include <optional>

namespace platform {

/// What an update service has to say to the user who asked for a check.
struct UpdateMessage {
  QString title;
  QString text;
  std::optional<double> progress{};  ///< 0 to 1, below 0 while it is unknown; none if nothing goes on
  QString action{};                  ///< what the user can do about it; empty for nothing
  std::function<void()> onAction{};
  QString close = "OK";
  std::function<void()> onClose{};  ///< the user closed the message
};

/// The one window of an update service. Main thread.
class UpdateUserDriver {
 public:
  virtual ~UpdateUserDriver() = default;

  /// Shows the message in front, in the place of the one before.
  virtual void show(UpdateMessage message) = 0;
  /// Changes what is on the screen, if it still is, and leaves the window where it is.
  virtual void showProgress(const QString& text, double progress) = 0;
  virtual void hide() = 0;
  /// Opens a page in the desktop's browser.
  virtual void open(const QUrl& page) = 0;
};

}  // namespace platform
