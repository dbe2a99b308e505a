#include "Velmora/Theme/Placeholder.h"

#include <QVBoxLayout>

#include "Velmora/Theme/TextLabel.h"

namespace velmora {

namespace {

constexpr int margin = 20;
constexpr int spacing = 10;
constexpr int symbolSize = 34;

void addText(QVBoxLayout& column, const QString& text, Theme::Text font, const QColor& color) {
  if (text.isEmpty()) return;
  auto* const label = new TextLabel(text, font, color);
  label->setWordWrap(true);
  label->setAlignment(Qt::AlignCenter);
  column.addWidget(label);
}

}  // namespace

Placeholder::Placeholder(const Words& words, QWidget* wayOn, QWidget* parent) : QWidget(parent) {
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(margin, margin, margin, margin);
  column->setSpacing(spacing);
  column->addStretch(1);
  if (!words.symbol.isEmpty()) column->addWidget(new SymbolLabel(words.symbol, Theme::secondary, symbolSize));
  addText(*column, words.title, Theme::Text::title, Theme::text);
  addText(*column, words.text, Theme::Text::body, Theme::secondary);
  if (wayOn) {
    column->addSpacing(spacing / 2);
    column->addWidget(wayOn, 0, Qt::AlignHCenter);
  }
  column->addStretch(1);
}

}  // namespace velmora
