#include "Velmora/Studio/TransportBar/PlayButton.h"

#include <QPainter>
#include <utility>

#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {
namespace {

constexpr double cornerRadius = 10;
constexpr double lightReach = 10;

struct Look {
  const char* label;
  const char* symbol;
  QColor symbolColor;
  QColor fill;
  QColor stroke;
};

const Look& lookOf(bool isPlaying) {
  static const Look dark{"Play", "play.fill", Theme::text, Theme::raised, Theme::line};
  static const Look lit{"Pause", "pause.fill", Theme::ink, Theme::accent,
                        Theme::withOpacity(Theme::accent, 0.6)};
  return isPlaying ? lit : dark;
}

}  // namespace

PlayButton::PlayButton(std::function<void()> action, QWidget* parent)
    : PaintedButton(lookOf(false).label, parent) {
  showLabel();
  connect(this, &QAbstractButton::clicked, this, [action = std::move(action)] { action(); });
}

/// The tip tells the key, too.
void PlayButton::showLabel() {
  const QString label = lookOf(isPlaying_).label;
  setLabel(label);
  setToolTip(label + " (Space)");
}

void PlayButton::setPlaying(bool isPlaying) {
  if (isPlaying == isPlaying_) return;
  isPlaying_ = isPlaying;
  showLabel();
  update();
  if (parentWidget()) parentWidget()->update(lightRect());
}

void PlayButton::setSizeClass(SizeClass sizeClass) {
  sizeClass_ = sizeClass;
  update();
}

QRect PlayButton::lightRect() const {
  const int margin = glowMargin(lightReach);
  return geometry().adjusted(-margin, -margin, margin, margin);
}

void PlayButton::paintLight(QPainter& painter) const {
  if (!isPlaying_) return;
  paintGlow(painter, geometry(), cornerRadius, Theme::withOpacity(Theme::accent, 0.45), lightReach);
}

void PlayButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const Look& look = lookOf(isPlaying_);
  paintPanel(painter, rect(), cornerRadius, look.fill, look.stroke);
  if (hasKeyboardFocus(*this)) paintFocusRing(painter, rect(), cornerRadius);
  press_.scaleAbout(painter, rect());
  const double size = sizeClass_ == SizeClass::compact ? 17 : 20;
  Theme::drawSymbol(painter, rect(), look.symbol, look.symbolColor, size);
}

}  // namespace velmora
