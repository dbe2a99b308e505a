#include "Velmora/Theme/FormParts.h"

#include <QAccessible>
#include <QApplication>
#include <QTextLayout>
#include <algorithm>
#include <utility>

#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/Spoken.h"

namespace velmora {

namespace {

constexpr int sectionPadding = 16;
constexpr int sectionGap = 12;
constexpr double sectionRadius = 12;
constexpr int captionGap = 5;
constexpr int focusMargin = 24;
constexpr QMargins pageMargins{20, 12, 20, 20};

}  // namespace

// Texts

namespace {

/// A text laid out in lines of a width.
struct Lines {
  Lines(const QString& text, const QFont& font, int width, Qt::Alignment alignment)
      : layout(QString(text).replace('\n', QChar::LineSeparator), font) {
    QTextOption option(alignment & Qt::AlignHorizontal_Mask);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
      line.setLineWidth(width);
      line.setPosition({0, height});
      height += line.height();
    }
    layout.endLayout();
  }

  QTextLayout layout;
  double height = 0;
};

}  // namespace

WrappedText::WrappedText(const QString& text, Theme::Text font, const QColor& color, QWidget* parent)
    : TextLabel(text, font, color, parent) {
  setWordWrap(true);
}

QSize WrappedText::sizeHint() const {
  constexpr int usual = 320;
  const QString start = text().left(usual);
  const int width = std::min(usual, fontMetrics().boundingRect(QRect(), 0, start).width() + 1);
  return {width, heightForWidth(width)};
}

QSize WrappedText::minimumSizeHint() const { return {80, fontMetrics().height()}; }

int WrappedText::heightForWidth(int width) const {
  return qCeil(Lines(text(), font(), width, alignment()).height);
}

void WrappedText::paintEvent(QPaintEvent*) {
  const Lines lines(text(), font(), width(), alignment());
  QPainter painter(this);
  painter.setPen(palette().color(QPalette::WindowText));
  if (!isEnabled()) painter.setOpacity(Theme::disabledOpacity);
  lines.layout.draw(&painter, {0, std::max(0.0, (height() - lines.height) / 2)});
}

QLabel* makeHint(const QString& text) {
  return new WrappedText(text, Theme::Text::caption, Theme::secondary);
}

QWidget* makeLabeled(const QString& name, QWidget& field) {
  auto* const labeled = new QWidget;
  auto* const column = new QVBoxLayout(labeled);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(captionGap);
  auto* const caption = new TextLabel(name, Theme::Text::caption, Theme::secondary);
  caption->setBuddy(&field);
  column->addWidget(caption);
  column->addWidget(&field);
  field.setFont(Theme::font(Theme::Text::body));
  field.setMinimumHeight(40);
  field.setAccessibleName(name);
  return labeled;
}

// Page and sections

FormPage::FormPage(QWidget* parent) : QScrollArea(parent) {
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::NoFocus);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setAlignment(Qt::AlignHCenter);
  setWidgetResizable(true);
  page_.setMaximumWidth(widest);
  page_.setLayout(&column_);
  column_.setContentsMargins(pageMargins);
  column_.setSpacing(sectionGap);
  column_.addStretch(1);
  setWidget(&page_);
  page_.setAutoFillBackground(false);
  viewport()->setAutoFillBackground(false);
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
    if (now && page_.isAncestorOf(now)) ensureWidgetVisible(now, 0, focusMargin);
  });
}

/// The scroll bar takes its room from the margin, so that the sections stay as wide as they were.
void FormPage::resizeEvent(QResizeEvent* event) {
  column_.setContentsMargins(pageMargins - QMargins(0, 0, width() - viewport()->width(), 0));
  QScrollArea::resizeEvent(event);
}

FormSection::FormSection(const QString& heading, QWidget* parent)
    : QWidget(parent), heading_(heading, Theme::Text::title) {
  Spoken::attach(*this, {.role = QAccessible::Grouping});
  setLayout(&column_);
  column_.setContentsMargins(sectionPadding, sectionPadding, sectionPadding, sectionPadding);
  column_.setSpacing(sectionGap);
  column_.addWidget(&heading_);
  setHeading(heading);
}

void FormSection::setHeading(const QString& heading) {
  setAccessibleName(heading);
  heading_.setText(heading);
  heading_.setVisible(!heading.isEmpty());
}

void FormSection::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  paintPanel(painter, rect(), sectionRadius, Qt::transparent, Theme::lineWeak);
}

// Link and switch

LinkButton::LinkButton(const QString& text, QWidget* parent)
    : CommandButton(text, {}, {.color = Theme::accent}, parent) {
  Spoken::attach(*this, {.role = QAccessible::Link, .press = [this] { click(); }});
}

namespace {

constexpr int switchHeight = 44;
constexpr QSize track{40, 24};
constexpr int trackGap = 16;
constexpr int knobInset = 3;

void paintTrack(QPainter& painter, const QRectF& place, bool isOn) {
  const double round = place.height() / 2;
  paintPanel(painter, place, round, isOn ? Theme::accent : Theme::deep, isOn ? Qt::transparent : Theme::line);
  QRectF knob(0, 0, place.height() - 2 * knobInset, place.height() - 2 * knobInset);
  knob.moveCenter({isOn ? place.right() - round : place.left() + round, place.center().y()});
  paintPanel(painter, knob, knob.height() / 2, isOn ? Theme::ink : Theme::secondary);
}

}  // namespace

Switch::Switch(const QString& text, QWidget* parent) : PaintedButton(text, parent) {
  setText(text);
  setToolTip({});
  setFont(Theme::font(Theme::Text::body));
  setCheckable(true);
  QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
  Spoken::attachToggle(*this);
}

int Switch::textHeight(int width) const {
  const QRect room(0, 0, std::max(1, width - track.width() - trackGap), QWIDGETSIZE_MAX);
  return fontMetrics().boundingRect(room, Qt::TextWordWrap, text()).height();
}

QSize Switch::sizeHint() const {
  return {fontMetrics().horizontalAdvance(text()) + 1 + trackGap + track.width(), switchHeight};
}

int Switch::heightForWidth(int width) const { return std::max(switchHeight, textHeight(width)); }

void Switch::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  if (!isEnabled()) painter.setOpacity(Theme::disabledOpacity);
  QRectF place(QPointF(), track);
  place.moveCenter({width() - track.width() / 2.0, height() / 2.0});
  paintTrack(painter, place, isChecked());
  if (hasKeyboardFocus(*this)) paintFocusRing(painter, place, track.height() / 2.0);
  painter.setPen(Theme::text);
  const QRect words = rect().adjusted(0, 0, -track.width() - trackGap, 0);
  painter.drawText(words, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextWordWrap, text());
}

// Feedback

namespace {
constexpr int symbolRoom = 40;
constexpr int messageHeight = 44;
constexpr int messagePadding = 10;
}  // namespace

MessageLine::MessageLine(QWidget* parent)
    : QWidget(parent), text_({}, Theme::Text::caption), dismiss_("xmark.circle", "Dismiss message") {
  setObjectName("message");
  Spoken::attach(*this, {.role = QAccessible::AlertMessage});
  dismiss_.setObjectName("message.dismiss");
  dismiss_.setTint(Theme::secondary);
  dismiss_.hide();
  auto* const row = new QHBoxLayout(this);
  auto* const padded = new QVBoxLayout;
  padded->setContentsMargins(0, messagePadding, 12, messagePadding);
  padded->addWidget(&text_);
  row->setContentsMargins(symbolRoom, 0, 0, 0);
  row->setSpacing(0);
  row->addLayout(padded, 1);
  row->addWidget(&dismiss_, 0, Qt::AlignTop);
  text_.setMinimumHeight(messageHeight - 2 * messagePadding);
  hide();
}

/// Coming into sight anew is what screen readers announce of an alert.
void MessageLine::setMessage(const QString& message) {
  hide();
  if (message.isEmpty()) return;
  const QString shown = message.size() > longest ? message.left(longest - 1) + u'…' : message;
  text_.setText(shown);
  setAccessibleName(shown);
  show();
  QAccessibleEvent alert(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

void MessageLine::setOnDismiss(std::function<void()> onDismiss) {
  connect(&dismiss_, &QAbstractButton::clicked, this, std::move(onDismiss));
  dismiss_.show();
}

void MessageLine::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QRect place = contentsRect();
  paintPanel(painter, place, 10, Theme::raised, Theme::line);
  const QRectF symbol(place.topLeft(), QSize(symbolRoom, messageHeight));
  Theme::drawSymbol(painter, symbol, "info.circle", Theme::accent, 16);
}

FormSheet::FormSheet(const QString& title, QSize size, QWidget* parent) : Sheet(title, parent) {
  message_.setContentsMargins(20, 12, 20, 6);
  content().setContentsMargins(0, 0, 0, 0);
  content().setSpacing(0);
  content().addWidget(&message_);
  content().addWidget(&page_, 1);
  setMinimumSize(420, 320);
  resize(parent ? size.boundedTo(parent->window()->size()) : size);
}

void FormLock::setLocked(bool isLocked) {
  if (isLocked != form_.isEnabledTo(form_.parentWidget())) return;
  QWidget* const focus = form_.window()->focusWidget();
  if (isLocked && focus && (focus == &form_ || form_.isAncestorOf(focus))) {
    focus_ = focus;
    focus->clearFocus();
  }
  form_.setEnabled(!isLocked);
  if (!isLocked && focus_ && !form_.window()->focusWidget() && focus_->isVisible()) focus_->setFocus();
  if (!isLocked) focus_.clear();
}

}  // namespace velmora
