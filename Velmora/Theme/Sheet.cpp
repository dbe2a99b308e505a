#include "Velmora/Theme/Sheet.h"

#include "Velmora/Theme/Paint.h"

namespace velmora {

namespace {

constexpr int toolbarHeight = 56;

}  // namespace

Sheet::Sheet(const QString& title, QWidget* parent) : QDialog(parent), heading_(title) {
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowModality(Qt::WindowModal);
  setWindowTitle(title);
  heading_.setFont(Theme::font(Theme::Text::title));
  heading_.setTextFormat(Qt::PlainText);
  toolbar_.setContentsMargins(8, 6, 8, 6);
  heading_.setIndent(12);
  toolbar_.addWidget(&heading_, 1);
  content_.setContentsMargins(20, 12, 20, 20);
  column_.setContentsMargins(0, 0, 0, 0);
  column_.setSpacing(0);
  column_.addLayout(&toolbar_);
  column_.addSpacing(1);
  column_.addLayout(&content_, 1);
  setLayout(&column_);
}

void Sheet::setHeading(const QString& heading) {
  setWindowTitle(heading);
  heading_.setText(heading);
}

TallButton& Sheet::addToolbarButton(TallButton* button, const QString& id) {
  button->setObjectName(id);
  toolbar_.addWidget(button);
  return *button;
}

TallButton& Sheet::addLeadingButton(TallButton* button, const QString& id) {
  button->setObjectName(id);
  toolbar_.insertWidget(0, button);
  return *button;
}

void Sheet::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  paintPanel(painter, rect(), 0, Theme::surface, Theme::lineWeak);
  painter.fillRect(0, toolbarHeight, width(), 1, Theme::line);
}

QLabel* makeLabel(const QString& text, Theme::Text font, const QColor& color) {
  auto* label = new TextLabel(text, font, color);
  label->setWordWrap(true);
  return label;
}

}  // namespace velmora
