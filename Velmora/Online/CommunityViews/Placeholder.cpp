#include "Velmora/Online/CommunityViews/Placeholder.h"

#include <QVBoxLayout>

#include "Velmora/Theme/TextLabel.h"

namespace velmora {

namespace {

constexpr int margin = 20;
constexpr int spacing = 10;
constexpr int symbolSize = 34;

QLabel* makeText(const QString& text, Theme::Text font, const QColor& color) {
  auto* const label = new TextLabel(text, font, color);
  label->setWordWrap(true);
  label->setAlignment(Qt::AlignCenter);
  return label;
}

}  // namespace

QWidget* makePlaceholder(const QString& symbol, const QString& heading, const QString& text) {
  auto* const placeholder = new QWidget;
  auto* const column = new QVBoxLayout(placeholder);
  column->setContentsMargins(margin, margin, margin, margin);
  column->setSpacing(spacing);
  column->addStretch(1);
  column->addWidget(new SymbolLabel(symbol, Theme::secondary, symbolSize));
  column->addWidget(makeText(heading, Theme::Text::title, Theme::text));
  column->addWidget(makeText(text, Theme::Text::body, Theme::secondary));
  column->addStretch(1);
  return placeholder;
}

}  // namespace velmora
