#include "Velmora/Theme/SymbolShapes.h"

#include <QPolygonF>
#include <algorithm>
#include <iterator>

namespace velmora {
namespace {

constexpr QPointF middle{12, 12};

QPainterPath polygon(const QPolygonF& points) {
  QPainterPath path;
  path.addPolygon(points);
  path.closeSubpath();
  return path;
}

QPainterPath bar(const QRectF& rect) {
  QPainterPath path;
  path.addRect(rect);
  return path;
}

QPainterPath disc(double radius) {
  QPainterPath path;
  path.addEllipse(middle, radius, radius);
  return path;
}

QPainterPath play() { return polygon({{8, 5}, {19, 12}, {8, 19}}); }
QPainterPath pause() { return bar({6, 5, 4, 14}) | bar({14, 5, 4, 14}); }
QPainterPath stop() { return bar({6, 6, 12, 12}); }
QPainterPath backwardToEnd() { return bar({6, 6, 2, 12}) | polygon({{18, 6}, {18, 18}, {9.5, 12}}); }
QPainterPath record() { return (disc(10) - disc(8)) | disc(5); }
QPainterPath stopInDisc() { return disc(10) - bar({8, 8, 8, 8}); }

struct Shape {
  std::u16string_view name;
  QPainterPath (*make)();
};

constexpr Shape shapes[] = {
    {u"play.fill", play},       {u"pause.fill", pause},
    {u"stop.fill", stop},       {u"backward.end.fill", backwardToEnd},
    {u"record.circle", record}, {u"stop.circle.fill", stopInDisc},
};

}  // namespace

QPainterPath symbolShape(std::u16string_view name) {
  const auto* const found = std::ranges::find(shapes, name, &Shape::name);
  return found == std::end(shapes) ? QPainterPath() : found->make();
}

}  // namespace velmora
