#include "VelmoraCore/Render/EventCompiler.h"

#include <algorithm>

namespace velmora {

namespace {

constexpr double sliver = 0.000001;  // beats; the shortest distance from an on event to its off
constexpr double mostTiles = 65536;

void append(std::vector<NoteEvent>& events, const Note& note, double onBeat, double offBeat) {
  const auto velocity = std::clamp<std::uint8_t>(note.velocity, 1, 127);
  events.push_back({onBeat, note.pitch, velocity, true});
  events.push_back({offBeat, note.pitch, velocity, false});
}

}  // namespace

void EventCompiler::appendPattern(std::vector<NoteEvent>& events, const Pattern& pattern) {
  const double length = pattern.lengthBeats;
  if (!(length > 0)) return;
  for (const Note& note : pattern.notes) {
    const double start = note.startBeat;
    if (!(0 <= start && start < length - sliver)) continue;
    double end = std::min(length, start + note.durationBeats);
    if (end >= length) end = length - sliver;  // the renderer never reaches an event at the length
    if (!(end > start)) end = start + sliver;
    append(events, note, start, end);
  }
}

void EventCompiler::appendClip(std::vector<NoteEvent>& events, const Clip& clip, const Pattern& pattern) {
  const double length = pattern.lengthBeats;
  const double clipStart = clip.startBeat;
  const double clipEnd = clipStart + clip.lengthBeats;
  const bool isPlayable =
      length > 0 && clip.lengthBeats > 0 && clip.lengthBeats / length <= mostTiles && clipStart < clipEnd;
  if (!isPlayable) return;

  for (double tileStart = clipStart;;) {
    const double tileEnd = length + tileStart;
    const double limit = std::min(clipEnd, tileEnd);
    for (const Note& note : pattern.notes) {
      if (!(0 <= note.startBeat && note.startBeat < length)) continue;
      const double on = tileStart + note.startBeat;
      if (!(on < clipEnd)) continue;
      double off = std::min(limit, on + note.durationBeats);
      if (!(off > on)) off = on + sliver;
      append(events, note, on, off);
    }
    if (!(tileEnd < clipEnd)) return;
    tileStart = tileEnd;
  }
}

}  // namespace velmora
