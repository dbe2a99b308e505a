#include "Velmora/Studio/TransportBar/TransportLayout.h"

#include <algorithm>

namespace velmora {
namespace {

constexpr TransportMeasures compactMeasures{.spacing = 6,
                                            .padding = 8,
                                            .height = 56,
                                            .dividerHeight = 28,
                                            .readoutHeight = 44,
                                            .positionWidth = 96,
                                            .tempoWidth = 52,
                                            .modeWidth = 150};
constexpr TransportMeasures regularMeasures{.spacing = 12,
                                            .padding = 16,
                                            .height = 64,
                                            .dividerHeight = 36,
                                            .readoutHeight = 50,
                                            .positionWidth = 128,
                                            .tempoWidth = 68,
                                            .modeWidth = 180};

/// Sets one thing after the other on a line, each in the middle of its height.
class Line {
 public:
  Line(int left, int top, int height, int spacing) : x_(left), middle_(top + height / 2), spacing_(spacing) {}

  QRect place(int width, int height) {
    const QRect rect(x_, middle_ - height / 2, width, height);
    x_ += width + spacing_;
    return rect;
  }

 private:
  int x_;
  int middle_;
  int spacing_;
};

/// The bar of one size class with what it shows.
struct Composer {
  const TransportMeasures& measures;
  bool isCompact = false;
  int positionWidth = 0;
  int tempoWidth = 0;
  int engineWidth = 0;

  Composer(SizeClass sizeClass, const TransportWidths& widths)
      : measures(TransportMeasures::of(sizeClass)),
        isCompact(sizeClass == SizeClass::compact),
        positionWidth(std::max(widths.position, measures.positionWidth)),
        tempoWidth(std::max(widths.tempo, measures.tempoWidth)),
        engineWidth(widths.engine) {}

  int buttonsWidth() const {
    return 3 * TransportLayout::buttonSize + TransportLayout::playWidth + 3 * measures.spacing;
  }
  int readoutsWidth() const { return positionWidth + measures.spacing + tempoWidth; }
  int dividerWidth() const { return 1 + measures.spacing; }
  int upperWidth() const { return buttonsWidth() + measures.spacing + readoutsWidth(); }
  int lowerWidth() const { return measures.modeWidth + measures.spacing + engineWidth; }
  int lastDividerWidth() const { return isCompact ? 0 : dividerWidth(); }

  int oneRowWidth() const {
    return 2 * measures.padding + upperWidth() + 2 * dividerWidth() + measures.spacing + lowerWidth() +
           lastDividerWidth();
  }
  int twoLinesWidth() const {
    return 2 * TransportLayout::linePadding + std::max(upperWidth(), lowerWidth());
  }

  void placeButtons(Line& line, TransportLayout& layout) const {
    constexpr int size = TransportLayout::buttonSize;
    layout.returnToStart = line.place(size, size);
    layout.stop = line.place(size, size);
    layout.play = line.place(TransportLayout::playWidth, size);
    layout.record = line.place(size, size);
  }

  void placeReadouts(Line& line, TransportLayout& layout) const {
    layout.position = line.place(positionWidth, measures.readoutHeight);
    layout.tempo = line.place(tempoWidth, measures.readoutHeight);
  }

  void placeMode(Line& line, TransportLayout& layout) const {
    layout.mode = line.place(measures.modeWidth, TransportLayout::modeHeight);
  }

  void placeEngine(Line& line, TransportLayout& layout) const {
    layout.engine = line.place(engineWidth, TransportLayout::buttonSize);
  }

  void placeDivider(Line& line, TransportLayout& layout) const {
    layout.dividers.push_back(line.place(1, measures.dividerHeight));
  }

  TransportLayout oneRow(int width) const {
    TransportLayout layout;
    layout.height = measures.height;
    Line line(measures.padding, 0, layout.height, measures.spacing);
    placeButtons(line, layout);
    placeDivider(line, layout);
    placeReadouts(line, layout);
    placeDivider(line, layout);
    placeMode(line, layout);
    Line end(width - measures.padding - engineWidth - lastDividerWidth(), 0, layout.height, measures.spacing);
    if (!isCompact) placeDivider(end, layout);
    placeEngine(end, layout);
    return layout;
  }

  TransportLayout twoLines(int width) const {
    TransportLayout layout;
    const int top = TransportLayout::linePadding;
    Line upper((width - upperWidth()) / 2, top, measures.readoutHeight, measures.spacing);
    placeButtons(upper, layout);
    placeReadouts(upper, layout);
    const int lowerTop = top + measures.readoutHeight + measures.spacing;
    Line lower((width - lowerWidth()) / 2, lowerTop, TransportLayout::modeHeight, measures.spacing);
    placeMode(lower, layout);
    placeEngine(lower, layout);
    layout.height = lowerTop + TransportLayout::modeHeight + TransportLayout::linePadding;
    return layout;
  }
};

}  // namespace

const TransportMeasures& TransportMeasures::of(SizeClass sizeClass) {
  return sizeClass == SizeClass::compact ? compactMeasures : regularMeasures;
}

TransportLayout TransportLayout::fit(int width, SizeClass sizeClass, const TransportWidths& widths) {
  const Composer composer(sizeClass, widths);
  return width >= composer.oneRowWidth() ? composer.oneRow(width) : composer.twoLines(width);
}

int TransportLayout::oneRowWidth(SizeClass sizeClass, const TransportWidths& widths) {
  return Composer(sizeClass, widths).oneRowWidth();
}

int TransportLayout::twoLinesWidth(SizeClass sizeClass, const TransportWidths& widths) {
  return Composer(sizeClass, widths).twoLinesWidth();
}

}  // namespace velmora
