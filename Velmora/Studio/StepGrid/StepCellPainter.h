#pragma once

#include <QColor>
#include <QPainter>
#include <QPixmap>
#include <QRectF>
#include <optional>
#include <vector>

namespace velmora {

/// Paints the cells of a grid. All cells of a kind and size are copies of the first one, which is kept from
/// one paint event to the next.
class StepCellPainter {
 public:
  /// What follows is painted here, in this colour.
  void begin(QPainter& painter, const QColor& color);

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

  QPainter* painter_ = nullptr;  // of the paint event
  QColor color_;
  double scale_ = 1;  // pixels of the device for a point
  std::vector<Stamp> stamps_;
};

}  // namespace velmora
