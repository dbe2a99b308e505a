#include "Velmora/Studio/Shell/ErrorBanner.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <algorithm>

#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/Spoken.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {
constexpr int symbolRoom = 44;
}

ErrorBanner::ErrorBanner(QWidget& parent) : QWidget(&parent), dismiss_("xmark.circle.fill", "Dismiss") {
  setObjectName("errorBanner");
  Spoken::attach(*this, {.role = QAccessible::AlertMessage});
  message_.setFont(Theme::font(Theme::Text::caption));
  message_.setTextFormat(Qt::PlainText);
  message_.setWordWrap(true);
  dismiss_.setObjectName("errorBanner.dismiss");
  dismiss_.setTint(Theme::secondary);
  connect(&dismiss_, &QAbstractButton::clicked, this, [this] {
    if (onDismiss) onDismiss();
  });
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(symbolRoom, 0, 0, 0);
  row->addWidget(&message_, 1);
  row->addWidget(&dismiss_, 0, Qt::AlignTop);
  animation_.setEasingCurve(QEasingCurve::OutQuad);
  connect(&animation_, &QVariantAnimation::valueChanged, this,
          [this](const QVariant& value) { setPresence(value.toDouble()); });
  hide();
}

void ErrorBanner::setMessage(const QString& message) {
  if (message.isEmpty()) return move(0);
  message_.setText(message);
  setAccessibleName(message);
  move(1);
  QAccessibleEvent alert(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

void ErrorBanner::move(double target) {
  animation_.stop();
  const int duration = Theme::duration(milliseconds);
  if (duration == 0 || presence_ == target) return setPresence(target);
  animation_.setStartValue(presence_);
  animation_.setEndValue(target);
  animation_.setDuration(duration);
  animation_.start();
}

void ErrorBanner::setPresence(double presence) {
  presence_ = presence;
  setVisible(presence > 0);
  place();
}

void ErrorBanner::place() {
  const QWidget& parent = *parentWidget();
  const int width = std::min(parent.width() - 2 * margin, maximumWidth);
  const int height = std::max(layout()->heightForWidth(width), layout()->minimumSize().height());
  const int hidden = qRound((1 - presence_) * (height + margin));
  setGeometry((parent.width() - width) / 2, margin - hidden, width, height);
  raise();
}

void ErrorBanner::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  paintPanel(painter, rect(), 10, Theme::raised, Theme::line);
  const QRectF place(0, 0, symbolRoom, dismiss_.height());
  Theme::drawSymbol(painter, place, "exclamationmark.triangle.fill", Theme::amber, 18);
}

}  // namespace velmora
