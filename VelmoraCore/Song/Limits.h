#pragma once

#include <cstddef>
#include <cstdint>

/// The limits that the whole document shares.
namespace velmora::limits {

inline constexpr double longestTimelineBeats = 16384;
inline constexpr double lowestBPM = 40;
inline constexpr double highestBPM = 300;
inline constexpr double shortestPatternBeats = 0.25;
inline constexpr std::size_t mostTracks = 128;
inline constexpr std::size_t mostPatterns = 4096;
inline constexpr std::size_t mostClips = 16384;
inline constexpr std::size_t mostNotesInPattern = 65536;
inline constexpr int mostStepsInPattern = 65536;
inline constexpr double noteEndTolerance = 0.000001;
inline constexpr std::size_t longestDocumentBytes = 33554432;

}  // namespace velmora::limits
