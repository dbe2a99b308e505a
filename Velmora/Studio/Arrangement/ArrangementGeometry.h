#pragma once

#include <QRectF>
#include <optional>

namespace velmora {

/// Where beats and rows lie on the arrangement's canvas, in points of its content.
struct ArrangementGeometry {
  static constexpr double pointsPerBeatAtFullSize = 48;
  static constexpr double laneHeight = 64;
  static constexpr double clipTop = 6;  ///< below the lane's top
  static constexpr double clipHeight = 52;
  static constexpr double leastClipWidth = 4;
  static constexpr int rulerHeight = 28;
  static constexpr int headerWidth = 320;
  static constexpr int compactHeaderWidth = 136;
  static constexpr int headerFootHeight = 52;    ///< below the last track's header
  static constexpr int compactBelowWidth = 700;  ///< of the whole view
  static constexpr double dragDistance = 6;
  static constexpr double resizeEdge = 18;
  static constexpr double spareBeats = 16;
  static constexpr int beatsPerBar = 4;

  static constexpr double zoomStep = 1.3;
  static constexpr double lowestZoom = 0.25;
  static constexpr double highestZoom = 4;

  static double clampedZoom(double zoom);
  /// From 12 to 192, whatever the factors are.
  static double pointsPerBeat(double zoom, double magnification);

  /// The track's row at a height; empty beside the lanes.
  static std::optional<int> row(double y, int trackCount);

  static QRectF clipFrame(double startBeat, double lengthBeats, int row, double pointsPerBeat);

  /// Whether a drag from `x` resizes the clip. A short clip keeps two thirds of its width for moving.
  static bool isResize(double x, double startBeat, double lengthBeats, double pointsPerBeat);
};

}  // namespace velmora
