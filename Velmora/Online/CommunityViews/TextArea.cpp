#include "Velmora/Online/CommunityViews/TextArea.h"

#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QTextDocument>
#include <algorithm>

#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

constexpr int sideMargin = 6;  // beside the document's own
constexpr int endMargin = 4;
constexpr double radius = 8;

}  // namespace

TextArea::TextArea(int leastLines, int mostLines, QWidget* parent)
    : QPlainTextEdit(parent), leastLines_(leastLines), mostLines_(mostLines) {
  setFrameShape(QFrame::NoFrame);
  setTabChangesFocus(true);
  setFont(Theme::font(Theme::Text::body));
  setViewportMargins(sideMargin, endMargin, sideMargin, endMargin);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  viewport()->setAutoFillBackground(false);
  connect(document()->documentLayout(), &QAbstractTextDocumentLayout::documentSizeChanged, this,
          [this] { fit(); });
  fit();
}

void TextArea::fit() {
  const auto lines = std::clamp(static_cast<int>(document()->size().height()), leastLines_, mostLines_);
  const double margins = 2 * (endMargin + document()->documentMargin());
  setFixedHeight(qCeil(lines * QFontMetricsF(font()).lineSpacing() + margins));
}

bool TextArea::event(QEvent* event) {
  if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) update();
  if (event->type() != QEvent::Paint) return QPlainTextEdit::event(event);
  QPainter painter(this);
  paintPanel(painter, rect(), radius, Theme::deep, hasFocus() ? Theme::accent : Theme::line);
  return true;
}

void TextArea::changeEvent(QEvent* event) {
  QPlainTextEdit::changeEvent(event);
  if (event->type() == QEvent::FontChange) fit();
}

void TextArea::resizeEvent(QResizeEvent* event) {
  QPlainTextEdit::resizeEvent(event);
  fit();
}

}  // namespace velmora
