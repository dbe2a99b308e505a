#include "Keyboard/PianoKey.h"

#include <QPainter>

#include "Tonic/Note.h"

namespace keyboard {

void PianoKey::operator()(QPainter& painter, const QRectF& frame, tonic::Pitch pitch, KeyState state) const {
  painter.setPen(Qt::NoPen);
  if (!isNatural(pitch)) {
    painter.setBrush(look.gapColor);
    painter.drawRoundedRect(frame, look.cornerRadius, look.cornerRadius);
  }
  painter.setBrush(state == KeyState::active ? look.activeColor
                   : isNatural(pitch)        ? look.naturalColor
                                             : look.darkColor);
  painter.drawRoundedRect(frame.adjusted(look.inset, look.inset, -look.inset, -look.inset), look.cornerRadius,
                          look.cornerRadius);
  if (pitch.pitchClass() != 0) return;
  painter.setPen(look.labelColor);
  painter.setFont(look.labelFont);
  painter.drawText(frame.adjusted(0, 0, 0, -look.labelPadding),
                   Qt::AlignHCenter | Qt::AlignBottom | Qt::TextDontClip,
                   QStringLiteral("C%1").arg(pitch.intValue() / 12 - 1));
}

}  // namespace keyboard
