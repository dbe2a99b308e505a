#pragma once

#include <QPointer>
#include <QProgressBar>
#include <functional>

#include "Platform/Services/UpdateUserDriver.h"
#include "Velmora/Theme/Sheet.h"
#include "Velmora/Theme/TallButton.h"

namespace velmora {

/// One message of the update service. The studio goes on behind it.
class UpdateSheet final : public Sheet {
 public:
  explicit UpdateSheet(QWidget* parent);

  void setMessage(platform::UpdateMessage message);
  void setProgress(const QString& text, double progress);
  /// Closes without asking for what the user's closing would do.
  void dismiss();

 private:
  void act();

  platform::UpdateMessage message_;
  QLabel* text_;
  QProgressBar bar_;
  TallButton& close_;
  TallButton& action_;
};

/// The update service's window over the studio.
class UpdateWindow final : public platform::UpdateUserDriver {
 public:
  /// `front` gives the window to stand over.
  explicit UpdateWindow(std::function<QWidget*()> front) : front_(std::move(front)) {}

  void show(platform::UpdateMessage message) override;
  void showProgress(const QString& text, double progress) override;
  void hide() override;
  void open(const QUrl& page) override;

 private:
  const std::function<QWidget*()> front_;
  QPointer<UpdateSheet> sheet_;
};

}  // namespace velmora
