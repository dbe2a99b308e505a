#pragma once

#include <QRect>
#include <cstdint>
#include <vector>

namespace velmora {

enum class SizeClass : std::uint8_t { compact, regular };

/// The measures of the bar that go with a size class, in logical pixels.
struct TransportMeasures {
  int spacing = 0;
  int padding = 0;
  int height = 0;
  int dividerHeight = 0;
  int readoutHeight = 0;
  int positionWidth = 0;  ///< at least
  int tempoWidth = 0;     ///< at least
  int modeWidth = 0;

  static const TransportMeasures& of(SizeClass sizeClass);
};

/// The widths that depend on what is shown.
struct TransportWidths {
  int position = 0;
  int tempo = 0;
  int engine = 0;
};

/// Where everything in the transport bar stands: in one row or, where that is too wide, in two lines.
struct TransportLayout {
  static constexpr int buttonSize = 44;
  static constexpr int playWidth = 52;
  static constexpr int modeHeight = 32;
  static constexpr int linePadding = 8;  ///< around the two lines

  QRect returnToStart;
  QRect stop;
  QRect play;
  QRect record;
  QRect position;
  QRect tempo;
  QRect mode;
  QRect engine;
  std::vector<QRect> dividers;
  int height = 0;

  static TransportLayout fit(int width, SizeClass sizeClass, const TransportWidths& widths);
  /// The width below which the one row breaks into two lines.
  static int oneRowWidth(SizeClass sizeClass, const TransportWidths& widths);
  static int twoLinesWidth(SizeClass sizeClass, const TransportWidths& widths);
};

}  // namespace velmora
