#include "Velmora/Studio/Arrangement/TrackHeaderRow.h"

#include <QAction>
#include <QKeyEvent>
#include <QPainter>

#include "Velmora/Studio/Arrangement/ArrangementGeometry.h"
#include "Velmora/Studio/Arrangement/SpokenMix.h"
#include "Velmora/Studio/Parts/TrackSymbol.h"
#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

constexpr int padding = 10;
constexpr int iconWidth = 22;
constexpr int textLeft = padding + iconWidth + 8;
constexpr int barWidth = 2;
constexpr int chipDistance = 38;  // the chips' hit areas touch, the chips don't
constexpr int knobDistance = 48;
constexpr int knobTop = 6;

QString kindWord(const Track& track) { return TrackSymbol::word(track.kind); }
QString nameOf(const Track& track) { return QString::fromStdString(track.name); }

}  // namespace

TrackHeaderRow::TrackHeaderRow(AppModel& model, const Content& content, QWidget* parent)
    : PaintedButton({}, parent),
      content_(content),
      mute_("M", "Mute", Theme::yellow, this),
      solo_("S", "Solo", Theme::accent, this),
      volume_("VOL", {0, 1}, Theme::color(content.track.color), this),
      pan_("PAN", {-1, 1}, Theme::color(content.track.color), this) {
  setObjectName("arrangement.track");
  setAttribute(Qt::WA_Hover);
  mute_.setObjectName("arrangement.track.mute");
  solo_.setObjectName("arrangement.track.solo");
  volume_.setObjectName("arrangement.track.volume");
  pan_.setObjectName("arrangement.track.pan");
  wire(model);
  addDeleteAction(model);
  showTrack();
}

void TrackHeaderRow::wire(AppModel& model) {
  connect(this, &QAbstractButton::clicked, &model, [this, &model] { model.selectTrack(trackID()); });
  connect(&mute_, &QAbstractButton::clicked, this, [this, &model] { model.toggleMute(trackID()); });
  connect(&solo_, &QAbstractButton::clicked, this, [this, &model] { model.toggleSolo(trackID()); });
  volume_.onChanged = [this, &model](float volume) { model.setTrackVolume(trackID(), volume); };
  volume_.valueText = spokenVolume;
  volume_.setDefaultValue(Track().volume);
  pan_.onChanged = [this, &model](float pan) { model.setTrackPan(trackID(), pan); };
  pan_.valueText = spokenPan;
  pan_.setDefaultValue(Track().pan);
}

void TrackHeaderRow::addDeleteAction(AppModel& model) {
  auto* const action = new QAction(Theme::symbolIcon("trash"), "Delete Track", this);
  connect(action, &QAction::triggered, &model, [this, &model] { model.deleteTrack(trackID()); });
  addAction(action);
  setContextMenuPolicy(Qt::ActionsContextMenu);
}

void TrackHeaderRow::show(const Content& content) {
  if (content == content_) return;
  content_ = content;
  showTrack();
}

void TrackHeaderRow::showTrack() {
  const Track& track = content_.track;
  const QString name = nameOf(track);
  setAccessibleName(QStringLiteral("%1, %2 track").arg(name, kindWord(track)));
  setToolTip(name);
  mute_.setOn(track.isMuted);
  mute_.setLabel((track.isMuted ? "Unmute " : "Mute ") + name);
  solo_.setOn(track.isSoloed);
  solo_.setLabel((track.isSoloed ? "Unsolo " : "Solo ") + name);
  for (KnobWithCaption* knob : {&volume_, &pan_}) {
    knob->setColor(Theme::color(track.color));
    knob->setVisible(content_.showsKnobs);
  }
  volume_.setValue(track.volume);
  volume_.setLabel(name + " volume");
  pan_.setValue(track.pan);
  pan_.setLabel(name + " pan");
  mute_.setVisible(content_.showsMixControls);
  solo_.setVisible(content_.showsMixControls);
  placeControls();
  update();
}

QSize TrackHeaderRow::sizeHint() const {
  return {ArrangementGeometry::headerWidth, static_cast<int>(ArrangementGeometry::laneHeight)};
}

/// From the right end inwards.
void TrackHeaderRow::placeControls() {
  int right = width() - padding;
  if (content_.showsKnobs) {
    const QSize size = pan_.sizeHint();
    pan_.setGeometry(right - size.width(), knobTop, size.width(), size.height());
    volume_.setGeometry(pan_.geometry().translated(-knobDistance, 0));
    right = volume_.x() - 4;
  }
  const QSize chip = solo_.sizeHint();
  solo_.setGeometry(right - chip.width(), (height() - chip.height()) / 2, chip.width(), chip.height());
  mute_.setGeometry(solo_.geometry().translated(-chipDistance, 0));
}

void TrackHeaderRow::resizeEvent(QResizeEvent*) { placeControls(); }

void TrackHeaderRow::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QColor ground = content_.isSelected || isDown() ? Theme::raised : Theme::surface;
  painter.fillRect(rect(), ground);
  if (underMouse() && !content_.isSelected) painter.fillRect(rect(), Theme::stripe);
  painter.fillRect(0, 0, width(), 1, Theme::line);
  if (content_.isSelected) painter.fillRect(0, 0, barWidth, height(), Theme::accent);
  Theme::drawSymbol(painter, QRectF(padding, 0, iconWidth, height()), TrackSymbol::name(content_.track.kind),
                    Theme::color(content_.track.color), 15);
  paintTexts(painter);
  if (hasKeyboardFocus(*this)) paintFocusRing(painter, QRectF(rect()).adjusted(2, 2, -2, -2), 6);
}

void TrackHeaderRow::paintTexts(QPainter& painter) const {
  const int right = content_.showsMixControls ? mute_.x() + 4 : width() - padding;
  const auto paintLine = [&](const QString& text, const QFont& font, const QColor& color, int top,
                             int height) {
    painter.setFont(font);
    painter.setPen(color);
    const QRect line(textLeft, top, right - textLeft, height);
    painter.drawText(line, Qt::AlignVCenter,
                     painter.fontMetrics().elidedText(text, Qt::ElideRight, line.width()));
  };
  paintLine(nameOf(content_.track), Theme::font(Theme::Text::control), Theme::text, 13, 20);
  paintLine(kindWord(content_.track), Theme::font(Theme::Text::caption), Theme::secondary, 32, 18);
}

/// Up and down go to the neighbours, whose tracks are then selected.
void TrackHeaderRow::keyPressEvent(QKeyEvent* event) {
  const int step = event->key() == Qt::Key_Up ? -1 : event->key() == Qt::Key_Down ? 1 : 0;
  if (step == 0 || !onStep) return PaintedButton::keyPressEvent(event);
  onStep(step);
}

}  // namespace velmora
