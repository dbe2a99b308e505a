#pragma once

#include <QColor>
#include <QPainter>
#include <QPixmap>
#include <QRectF>

class QWidget;

namespace velmora {

/// A rounded panel with an outline 1 wide just inside its edge; transparent colours leave a part out.
void paintPanel(QPainter& painter, const QRectF& rect, double radius, const QColor& fill,
                const QColor& outline = Qt::transparent);

/// The ring just inside the edge of what has the keyboard focus: of the accent, and of ink inside it, which
/// sets it off where the ground is the accent, too. The radius is at least 3.
void paintFocusRing(QPainter& painter, const QRectF& rect, double radius);

/// The light around a rounded shape: a blur that fades over `reach` logical pixels. The shape itself is
/// painted over it by the caller.
void paintGlow(QPainter& painter, const QRectF& shape, double cornerRadius, const QColor& color,
               double reach);

/// How far beyond its shape a glow still paints, in whole logical pixels.
int glowMargin(double reach);

/// A transparent picture of the widget's size, pixel for pixel.
QPixmap pictureOf(const QWidget& widget);

/// Whether such a picture still has the widget's size.
bool isPictureOf(const QWidget& widget, const QPixmap& picture);

/// True once the focus has come by the keyboard: then it shows, and then the widget keeps its keys.
bool hasKeyboardFocus(const QWidget& widget);

}  // namespace velmora
