#include "Velmora/Studio/PatternPicker/EditorPlaceholder.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

constexpr int margin = 20;
constexpr int spacing = 10;
constexpr int symbolSize = 32;

void addSymbol(QVBoxLayout& column, const QString& symbol) {
  if (symbol.isEmpty()) return;
  auto* const label = new QLabel;
  label->setPixmap(Theme::symbolIcon(symbol, Theme::secondary, symbolSize)
                       .pixmap(QSize(symbolSize, symbolSize), label->devicePixelRatioF()));
  column.addWidget(label, 0, Qt::AlignHCenter);
}

void addText(QVBoxLayout& column, const QString& text, Theme::Text font, const QColor& color) {
  if (text.isEmpty()) return;
  auto* const label = new QLabel(text);
  QPalette palette = label->palette();
  palette.setColor(QPalette::WindowText, color);
  label->setPalette(palette);
  label->setFont(Theme::font(font));
  label->setWordWrap(true);
  label->setAlignment(Qt::AlignCenter);
  column.addWidget(label);
}

}  // namespace

EditorPlaceholder::EditorPlaceholder(const Words& words, std::function<void()> onPress, QWidget* parent)
    : QWidget(parent) {
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(margin, margin, margin, margin);
  column->setSpacing(spacing);
  column->addStretch(1);
  addSymbol(*column, words.symbol);
  addText(*column, words.title, Theme::Text::title, Theme::text);
  addText(*column, words.text, Theme::Text::body, Theme::secondary);
  if (!words.button.isEmpty()) {
    auto* const button = new QPushButton(words.button);
    connect(button, &QAbstractButton::clicked, this, std::move(onPress));
    column->addWidget(button, 0, Qt::AlignHCenter);
  }
  column->addStretch(1);
}

}  // namespace velmora
