#include "Velmora/Studio/AudioEditor/ClipRow.h"

#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "Velmora/Theme/Spoken.h"

namespace velmora {

namespace {

constexpr int gap = 6;
constexpr int buttonHeight = 44;
constexpr CommandButton::Look raised{.fill = CommandButton::Fill::raised};

QString textOf(const Clip& clip) {
  return QStringLiteral("Beat %1").arg(static_cast<std::int64_t>(clip.startBeat));
}

}  // namespace

ClipRow::ClipRow(QWidget* parent) : QScrollArea(parent) {
  setObjectName("audio.clips");
  setAccessibleName("Clips");
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::NoFocus);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  viewport()->setAutoFillBackground(false);
  setWidget(&content_);
  content_.setAutoFillBackground(false);
}

QSize ClipRow::sizeHint() const { return {0, buttonHeight + horizontalScrollBar()->sizeHint().height()}; }

void ClipRow::show(std::vector<Clip> clips, const std::optional<UUID>& shown) {
  if (clips != clips_) {
    clips_ = std::move(clips);
    while (buttons_.size() < clips_.size()) addButton();
    while (buttons_.size() > clips_.size()) {
      delete buttons_.back();
      buttons_.pop_back();
    }
    place();
  }
  const auto found = std::ranges::find_if(clips_, [&](const Clip& clip) { return clip.id == shown; });
  if (found == clips_.end()) return;
  CommandButton& button = *buttons_[static_cast<std::size_t>(found - clips_.begin())];
  if (button.isChecked()) return;
  button.setChecked(true);
  ensureWidgetVisible(&button, gap, 0);
}

void ClipRow::addButton() {
  auto* const button = new CommandButton({}, {}, raised, &content_);
  button->setObjectName("audio.clip");
  button->setCheckable(true);
  button->setAutoExclusive(true);
  Spoken::attachToggle(*button);
  connect(button, &QAbstractButton::clicked, this, [this, index = buttons_.size()] {
    if (onSelect) onSelect(clips_[index].id);
  });
  buttons_.push_back(button);
}

void ClipRow::place() {
  int left = 0;
  for (std::size_t index = 0; index < clips_.size(); ++index) {
    CommandButton& button = *buttons_[index];
    button.setContent(textOf(clips_[index]));
    button.setGeometry(left, 0, button.sizeHint().width(), buttonHeight);
    button.show();
    left += button.width() + gap;
  }
  content_.resize(std::max(left - gap, 0), buttonHeight);
}

/// A wheel that turns one way only goes through the row; at its ends it scrolls what the row lies in.
void ClipRow::wheelEvent(QWheelEvent* event) {
  const int before = horizontalScrollBar()->value();
  const QPoint turn = event->angleDelta();
  horizontalScrollBar()->setValue(before - (turn.x() != 0 ? turn.x() : turn.y()));
  event->setAccepted(horizontalScrollBar()->value() != before);
}

}  // namespace velmora
