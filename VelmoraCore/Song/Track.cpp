#include "VelmoraCore/Song/Track.h"

#include <algorithm>
#include <array>

namespace velmora {
namespace {

constexpr std::array colors{TrackColor::blue,  TrackColor::orange, TrackColor::red,  TrackColor::pink,
                            TrackColor::green, TrackColor::purple, TrackColor::teal, TrackColor::yellow};
constexpr std::array<std::string_view, colors.size()> colorTexts{"blue",  "orange", "red",  "pink",
                                                                 "green", "purple", "teal", "yellow"};

}  // namespace

std::span<const TrackColor> allTrackColors() { return colors; }
std::string_view storedValue(TrackColor color) { return colorTexts.at(static_cast<std::size_t>(color)); }

std::optional<TrackColor> trackColor(std::string_view text) {
  const auto found =
      std::find_if(colors.begin(), colors.end(), [&](auto color) { return storedValue(color) == text; });
  return found == colors.end() ? std::nullopt : std::optional(*found);
}

}  // namespace velmora
