#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>

namespace velmora {

/// The part of the timeline that is in view, and how large it is shown. The offset stays on whole points and,
/// after each change by a function, inside the content.
struct TimelineViewport {
  QPointF scrollOffset;
  QSizeF viewportSize;
  double zoom = 1;
  double magnification = 1;  ///< of the running pinch

  double timelineBeats = 0;  ///< the end of the song or of its shown loop, whichever is later
  int trackCount = 0;
  double footHeight = 0;  ///< what stands below the last track's header

  double pointsPerBeat() const;
  /// What the canvas draws on; never smaller than the view.
  QSizeF contentSize() const;
  QPointF toContent(const QPointF& inView) const { return inView + scrollOffset; }

  void scrollTo(const QPointF& offset);
  void scrollBy(const QPointF& distance) { scrollTo(scrollOffset + distance); }
  bool showsBeat(double beat) const;
  /// Scrolls so that the beat is a little behind the left edge.
  void turnPageTo(double beat);
  /// Scrolls as little as shows the rectangle; of a larger one, its start.
  void reveal(const QRectF& content);

  // What lies at `anchorX`, in points of the view, stays there.
  void zoomTo(double newZoom, double anchorX);
  void magnify(double factor, double anchorX);
  /// The pinch has ended: its factor becomes part of the zoom.
  void endMagnification(double anchorX);

 private:
  template <class Change>
  void keepingBeatAt(double anchorX, const Change& change);
};

}  // namespace velmora
