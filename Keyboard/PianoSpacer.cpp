#include "Keyboard/PianoSpacer.h"

#include <algorithm>
#include <cstddef>

#include "Tonic/Note.h"

namespace keyboard {

namespace {

using tonic::Pitch;

constexpr int whiteLevel = 0;
constexpr int blackLevel = 1;

double ratioOf(Pitch natural, const LetterRatios& ratios) {
  return ratios[static_cast<std::size_t>(tonic::Note(natural).noteClass.letter)];
}

std::vector<Pitch> pitchesOf(const PitchRange& range) {
  std::vector<Pitch> pitches;
  pitches.reserve(static_cast<std::size_t>(range.count()));
  for (int i = 0; i < range.count(); ++i) pitches.push_back(Pitch(range.lowerBound().intValue() + i));
  return pitches;
}

}  // namespace

std::vector<KeyRectInfo> PianoSpacer::keyRectInfos(QSizeF size) const {
  const PitchRange range = pitchRange.boundedByNaturals();
  const std::vector<Pitch> pitches = pitchesOf(range);
  const auto whiteCount = std::count_if(pitches.begin(), pitches.end(), tonic::isNatural);
  const double whiteWidth = size.width() / static_cast<double>(whiteCount);
  const QSizeF blackSize(whiteWidth * relativeBlackKeyWidth, size.height() * relativeBlackKeyHeight);

  std::vector<KeyRectInfo> whiteKeys;
  std::vector<KeyRectInfo> blackKeys;
  double blackX = whiteWidth * ratioOf(range.lowerBound(), initialSpacerRatio);
  for (Pitch pitch : pitches) {
    if (isNatural(pitch)) {
      const double x = whiteWidth * static_cast<double>(whiteKeys.size());
      whiteKeys.push_back({{x, 0, whiteWidth, size.height()}, pitch, whiteLevel});
      blackX += whiteWidth * ratioOf(pitch, spacerRatio);
    } else {
      blackKeys.push_back({{{blackX, 0}, blackSize}, pitch, blackLevel});
      blackX += blackSize.width();
    }
  }
  whiteKeys.insert(whiteKeys.end(), blackKeys.begin(), blackKeys.end());
  return whiteKeys;
}

}  // namespace keyboard
