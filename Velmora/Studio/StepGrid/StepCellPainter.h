#pragma once

#include <QColor>
#include <QPainter>
#include <QPixmap>
#include <QRectF>
#include <optional>
#include <vector>

namespace velmora {

/// Paints cells of the grid in one colour for the length of one paint event. All cells of a kind and size are
/// copies of the first one.
class StepCellPainter {
 public:
  StepCellPainter(QPainter& painter, const QColor& color);

  /// The beats of a page alternate in shade.
  enum class Beat { light, dark };

  /// Without a velocity the cell is off.
  void paint(const QRectF& cell, Beat beat, std::optional<int> velocity);

 private:
  enum class Kind { light, dark, on };
  struct Stamp {
    Kind kind;
    QSize pixels;
    QPixmap pixmap;
  };

  QRectF onPixels(const QRectF& rect) const;
  const QPixmap& stamp(Kind kind, const QSize& pixels);
  QPixmap draw(Kind kind, const QSize& pixels) const;

  QPainter& painter_;
  const QColor color_;
  const double scale_;  // pixels of the device for a point
  std::vector<Stamp> stamps_;
};

}  // namespace velmora
