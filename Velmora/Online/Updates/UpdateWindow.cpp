#include "Velmora/Online/Updates/UpdateWindow.h"

#include <QAccessible>
#include <QDesktopServices>
#include <utility>

namespace velmora {

UpdateSheet::UpdateSheet(QWidget* parent)
    : Sheet({}, parent),
      text_(makeLabel({}, Theme::Text::body, Theme::secondary)),
      close_(addToolbarButton(new TallButton({}), "update.close")),
      action_(addToolbarButton(new TallButton({}, {}, {.fill = TallButton::Fill::accent}), "update.action")) {
  setObjectName("update");
  setWindowModality(Qt::NonModal);
  setFixedWidth(460);
  text_->setObjectName("update.text");
  bar_.setObjectName("update.progress");
  bar_.setTextVisible(false);
  bar_.setFixedHeight(6);
  content().setSpacing(12);
  content().addWidget(text_);
  content().addWidget(&bar_);
  connect(&close_, &QAbstractButton::clicked, this, &QDialog::reject);
  connect(&action_, &QAbstractButton::clicked, this, [this] { act(); });
  connect(this, &QDialog::rejected, this, [this] {
    if (const auto onClose = std::exchange(message_.onClose, {})) onClose();
  });
}

void UpdateSheet::setMessage(platform::UpdateMessage message) {
  message_ = std::move(message);
  setHeading(message_.title);
  close_.setContent(message_.close);
  action_.setContent(message_.action);
  action_.setVisible(!message_.action.isEmpty());
  bar_.setVisible(message_.progress.has_value());
  bar_.setAccessibleName(message_.title);
  setProgress(message_.text, message_.progress.value_or(-1));
  (action_.isHidden() ? close_ : action_).setFocus();
  setFixedHeight(hasHeightForWidth() ? heightForWidth(width()) : sizeHint().height());
  QAccessibleEvent alert(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

void UpdateSheet::setProgress(const QString& text, double progress) {
  text_->setText(text);
  text_->setHidden(text.isEmpty());
  setAccessibleDescription(text);
  bar_.setRange(0, progress < 0 ? 0 : 1000);
  bar_.setValue(static_cast<int>(1000 * progress));
}

void UpdateSheet::dismiss() {
  message_ = {};
  close();
}

// What is done may change the message or end the sheet.
void UpdateSheet::act() {
  const auto onAction = message_.onAction;
  if (onAction) onAction();
}

void UpdateWindow::show(platform::UpdateMessage message) {
  if (!sheet_ || !sheet_->isVisible()) sheet_ = new UpdateSheet(front_());
  sheet_->setMessage(std::move(message));
  sheet_->show();
  sheet_->raise();
  sheet_->activateWindow();
}

void UpdateWindow::showProgress(const QString& text, double progress) {
  if (sheet_ && sheet_->isVisible()) sheet_->setProgress(text, progress);
}

void UpdateWindow::hide() {
  if (sheet_) sheet_->dismiss();
}

// The page's address comes from outside: nothing but the web gets it.
void UpdateWindow::open(const QUrl& page) {
  if (page.scheme() == "https") QDesktopServices::openUrl(page);
}

}  // namespace velmora
