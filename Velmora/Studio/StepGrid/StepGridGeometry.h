#pragma once

#include <QPointF>
#include <QRectF>
#include <QSize>
#include <array>
#include <optional>
#include <vector>

#include "VelmoraCore/Song/DrumSound.h"

namespace velmora {

/// The sounds in the order of the grid's rows, from the top.
inline constexpr std::array stepSounds{DrumSound::kick,      DrumSound::snare,   DrumSound::clap,
                                       DrumSound::closedHat, DrumSound::openHat, DrumSound::lowTom,
                                       DrumSound::rim,       DrumSound::perc};

/// A cell of the shown page.
struct StepPlace {
  int row = 0;
  int column = 0;

  bool operator==(const StepPlace&) const = default;
};

/// How a pattern's steps fall on pages of one bar.
struct StepPages {
  static constexpr int stepsPerPage = 16;

  int stepCount = 0;

  int count() const;  ///< at least 1
  int clamped(int page) const;
  int visibleCount(int page) const;  ///< steps on a page, 0 to 16
  static int firstStep(int page) { return page * stepsPerPage; }
};

/// Where the cells of a page lie, in points from the grid's top left.
struct StepGridGeometry {
  static constexpr double cellSize = 44;  ///< the height of every cell and the least width
  static constexpr int rowCount = static_cast<int>(stepSounds.size());
  static constexpr std::size_t cellCount = stepSounds.size() * StepPages::stepsPerPage;  ///< of a full page

  int stepCount = 0;  ///< of this page
  double cellWidth = cellSize;
  double cellHeight = cellSize;

  /// Cells that fill the width, or keep their least width where that is too narrow.
  static StepGridGeometry fitting(double viewportWidth, int stepCount);

  QSize size() const;
  QRectF slot(StepPlace place) const;  ///< what a press hits
  QRectF cell(StepPlace place) const;  ///< what is painted
  QRectF column(int column) const;
  std::optional<StepPlace> placeAt(QPointF point) const;
  std::vector<StepPlace> places() const;  ///< all, row by row
  static std::size_t indexOnFullPage(StepPlace place);

  /// The marks of a filled cell.
  static QRectF velocityBar(const QRectF& cell, int velocity);
  static QRectF dot(const QRectF& cell);

  bool operator==(const StepGridGeometry&) const = default;
};

}  // namespace velmora
