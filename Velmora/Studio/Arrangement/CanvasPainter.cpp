#include "Velmora/Studio/Arrangement/CanvasPainter.h"

#include <algorithm>
#include <cmath>

#include "Velmora/Studio/Arrangement/ArrangementGeometry.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

using Geometry = ArrangementGeometry;

constexpr double outlineReach = 2;  // beyond a clip's frame

}  // namespace

CanvasPainter::CanvasPainter(QPainter& painter, const CanvasContent& content, const QRectF& area)
    : painter_(painter),
      content_(content),
      area_(area),
      scale_{content.pointsPerBeat, content.scrollOffset.x(), painter.device()->devicePixelRatioF()} {}

double CanvasPainter::top(int row) const { return Geometry::laneHeight * row - content_.scrollOffset.y(); }

int CanvasPainter::firstRow() const {
  const double row = (area_.top() + content_.scrollOffset.y()) / Geometry::laneHeight;
  return std::max(0, static_cast<int>(std::floor(row)));
}

int CanvasPainter::lastRow() const {
  const double row = (area_.bottom() + content_.scrollOffset.y()) / Geometry::laneHeight;
  return std::min(content_.data.trackCount() - 1, static_cast<int>(std::floor(row)));
}

void CanvasPainter::paintGround(const LaneGround& ground) {
  const auto selected =
      content_.selectedTrackID ? content_.data.rowOf(*content_.selectedTrackID) : std::nullopt;
  for (int row = firstRow(); top(row) < area_.bottom(); ++row) {
    const QPixmap& strip = row == selected ? ground.selectedLane() : ground.plainLane();
    painter_.drawPixmap(QPointF(0, top(row)), strip);
  }
  for (int row = firstRow(); row <= lastRow() + 1; ++row)
    painter_.fillRect(QRectF(area_.left(), top(row), area_.width(), 1), Theme::line);
  paintLoopLine(content_.loop.startBeat);
  paintLoopLine(content_.loop.endBeat);
}

void CanvasPainter::paintLoopLine(double beat) {
  painter_.fillRect(QRectF(scale_.x(beat), area_.top(), 1, area_.height()),
                    Theme::withOpacity(Theme::accent, 0.35));
}

void CanvasPainter::paintClips(ClipPainter& clipPainter, const IndexOfRow& indexOfRow) {
  clipPainter.begin(scale_.pixelsPerPoint);
  const double startBeat = scale_.beatAt(area_.left() - Geometry::leastClipWidth - outlineReach);
  const double endBeat = scale_.beatAt(area_.right() + outlineReach);
  for (int row = firstRow(); row <= lastRow(); ++row) {
    const Lane& lane = content_.data.lane(row);
    const QColor color = Theme::color(lane.color);
    for (int index : indexOfRow(row).overlapping(startBeat, endBeat)) {
      const ClipBox& clip = lane.clips[static_cast<std::size_t>(index)];
      const double left = scale_.x(clip.startBeat);
      const double width = scale_.x(clip.endBeat()) - left;
      QRectF frame = Geometry::clipFrame(0, 1, row, width);
      frame.translate(left, scale_.snapped(-content_.scrollOffset.y()));
      clipPainter.paint(
          painter_, {clip, frame, scale_.pointsPerBeat, color, clip.id == content_.selectedClipID}, area_);
    }
  }
}

}  // namespace velmora
