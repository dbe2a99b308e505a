#include "Velmora/Studio/Arrangement/ArrangementToolbar.h"

#include <QHBoxLayout>
#include <QPainter>
#include <array>
#include <utility>

#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

constexpr int margin = 12;
constexpr int spacing = 8;

}  // namespace

ArrangementToolbar::ArrangementToolbar(QWidget* parent) : QWidget(parent) {
  const std::pair<CommandButton*, const char*> buttons[] = {
      {&editClips, "arrangement.editClips"}, {&placePattern, "arrangement.placePattern"},
      {&zoomOut, "arrangement.zoomOut"},     {&zoomIn, "arrangement.zoomIn"},
      {&loop, "arrangement.loop"},           {&deleteClip, "arrangement.deleteClip"}};
  editClips.setCheckable(true);
  editClips.setToolTip("Turn off to scroll the arrangement by dragging");
  editClips.setAccessibleDescription(editClips.toolTip());
  editClips.setMinimumWidth(104);
  zoomOut.setLabelShown(CommandButton::Label::hidden);
  zoomIn.setLabelShown(CommandButton::Label::hidden);
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(margin, 0, margin, 1);
  row->setSpacing(spacing);
  for (const auto& [button, name] : buttons) {
    button->setObjectName(name);
    row->addWidget(button);
  }
  row->addStretch(1);
}

void ArrangementToolbar::fit(int width) {
  using Label = CommandButton::Label;
  const std::array withText{&deleteClip, &loop, &placePattern};
  int needed =
      2 * margin + 5 * spacing + editClips.widthWith(Label::shown) + 2 * zoomOut.widthWith(Label::hidden);
  for (CommandButton* button : withText) needed += button->widthWith(Label::shown);
  for (CommandButton* button : withText) {
    const bool isHidden = needed > width;
    button->setLabelShown(isHidden ? Label::hidden : Label::shown);
    if (isHidden) needed += button->widthWith(Label::hidden) - button->widthWith(Label::shown);
  }
  fittedWidth_ = needed;
}

void ArrangementToolbar::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), Theme::surface);
  painter.fillRect(0, height() - 1, width(), 1, Theme::line);
}

}  // namespace velmora
