#include "Velmora/Theme/SegmentedPicker.h"

#include <QFontMetrics>
#include <QPainter>
#include <algorithm>

#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/PaintedButton.h"
#include "Velmora/Theme/Spoken.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {
namespace {

constexpr int pickerHeight = 32;
constexpr int inset = 2;
constexpr double cornerRadius = 10;

class Segment final : public PaintedButton {
 public:
  Segment(const QString& title, QWidget* parent) : PaintedButton(title, parent) {
    setToolTip({});
    setText(title);
    setFont(Theme::font(Theme::Text::control));
    setCheckable(true);
    setAutoExclusive(true);
    Spoken::attachToggle(*this);
  }

  QSize sizeHint() const override { return {fontMetrics().horizontalAdvance(text()) + 28, pickerHeight}; }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setPen(isChecked() || isDown() ? Theme::text : Theme::secondary);
    painter.drawText(rect(), Qt::AlignCenter, text());
    if (hasKeyboardFocus(*this)) paintFocusRing(painter, rect(), cornerRadius - inset);
  }
};

}  // namespace

SegmentedPicker::SegmentedPicker(const QString& label, const QStringList& entries, QWidget* parent)
    : QWidget(parent) {
  setAccessibleName(label);
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  Spoken::attach(*this, {.role = QAccessible::Grouping, .value = [this] {
                           const int index = selected();
                           return index < 0 ? QString() : segments_[static_cast<std::size_t>(index)]->text();
                         }});
  for (const QString& entry : entries) {
    const int index = static_cast<int>(segments_.size());
    auto* const segment = new Segment(entry, this);
    connect(segment, &QAbstractButton::clicked, this, [this, index] {
      if (onSelect) onSelect(index);
    });
    connect(segment, &QAbstractButton::toggled, this, [this] { update(); });
    segments_.push_back(segment);
  }
}

int SegmentedPicker::selected() const {
  const auto found = std::ranges::find_if(segments_, &QAbstractButton::isChecked);
  return found == segments_.end() ? -1 : static_cast<int>(found - segments_.begin());
}

void SegmentedPicker::setSelected(int index) {
  segments_.at(static_cast<std::size_t>(index))->setChecked(true);
}

QSize SegmentedPicker::sizeHint() const {
  int widest = 0;
  for (const auto* const segment : segments_) widest = std::max(widest, segment->sizeHint().width());
  return {widest * static_cast<int>(segments_.size()) + 2 * inset, pickerHeight};
}

QRect SegmentedPicker::pill() const {
  const int index = selected();
  return index < 0 ? QRect() : segments_[static_cast<std::size_t>(index)]->geometry();
}

void SegmentedPicker::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  paintPanel(painter, rect(), cornerRadius, Theme::deep, Theme::line);
  if (const QRect place = pill(); !place.isEmpty()) {
    paintPanel(painter, place, cornerRadius - inset, Theme::raised, Theme::lineWeak);
  }
}

void SegmentedPicker::resizeEvent(QResizeEvent*) {
  const int count = static_cast<int>(segments_.size());
  const int length = width() - 2 * inset;
  for (int i = 0; i < count; ++i) {
    const int left = inset + length * i / count;
    const int right = inset + length * (i + 1) / count;
    segments_[static_cast<std::size_t>(i)]->setGeometry(left, inset, right - left, height() - 2 * inset);
  }
}

}  // namespace velmora
