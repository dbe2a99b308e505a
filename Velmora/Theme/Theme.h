#pragma once

#include <QColor>
#include <QFont>
#include <QIcon>
#include <QPainter>
#include <QString>

#include "VelmoraCore/Song/Track.h"

namespace velmora {

/// The one dark look of the studio: sRGB colours by role.
struct Theme {
  static constexpr QColor background{0x0E, 0x0F, 0x12};  ///< workspaces
  static constexpr QColor surface{0x17, 0x18, 0x1C};     ///< panels
  static constexpr QColor raised{0x1F, 0x21, 0x26};      ///< strips, pressed buttons
  static constexpr QColor deep{0x0A, 0x0B, 0x0E};        ///< behind lanes
  static constexpr QColor lineWeak{255, 255, 255, 26};   ///< weak rules
  static constexpr QColor line{255, 255, 255, 36};       ///< dividers, outlines
  static constexpr QColor stripe{255, 255, 255, 8};      ///< lane stripes
  static constexpr QColor text{0xF2, 0xF3, 0xF5};
  static constexpr QColor secondary{0x8A, 0x8F, 0x9E};  ///< captions
  static constexpr QColor ink{0x14, 0x14, 0x16};        ///< text on accent
  static constexpr QColor accent{0xFF, 0x9E, 0x66};     ///< selection, play
  static constexpr QColor record{0xFF, 0x3B, 0x30};
  static constexpr QColor danger{0xFF, 0x45, 0x3A};  ///< clipping, engine off
  static constexpr QColor green{0x30, 0xD1, 0x58};   ///< engine on
  static constexpr QColor amber{0xFF, 0xA0, 0x28};   ///< warnings
  static constexpr QColor yellow{0xFF, 0xD4, 0x3D};  ///< highlights

  static QColor color(TrackColor color);
  static QColor withOpacity(QColor color, double opacity);

  /// Of the symbol and text of a control that can't be used now.
  static constexpr double disabledOpacity = 0.35;

  /// The roles of text; sizes are logical pixels.
  enum class Text {
    capitals,        ///< bold 9, letter-spaced by 1
    label,           ///< semibold 11
    digits,          ///< medium 10, figures of one width
    largeDigits,     ///< medium 20, figures of one width
    compactReadout,  ///< semibold 22, monospaced
    readout,         ///< semibold 30, monospaced
    body,
    caption,
    title,    ///< body, semibold and larger: names and headings
    control,  ///< semibold 13: buttons, menus, pickers
  };
  static QFont font(Text role);

  /// Symbols go by the interface's own names ("chevron.left"). They are drawn centred in the rectangle, to go
  /// with text of `size` logical pixels; an unknown name draws nothing.
  static void drawSymbol(QPainter& painter, const QRectF& rect, const QString& name, const QColor& color,
                         double size);
  static QIcon symbolIcon(const QString& name, const QColor& color = text, double size = 20);

  /// Fonts, palette and style of the whole application; before the first widget is shown.
  static void install();

  /// Length of an animation in ms: `milliseconds`, or 0 where the desktop asks for reduced motion.
  static int duration(int milliseconds);
  static void setReducesMotion(bool reducesMotion);
};

}  // namespace velmora
