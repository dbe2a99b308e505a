#pragma once

#include <vector>

#include "VelmoraCore/Render/NoteEvent.h"
#include "VelmoraCore/Song/Clip.h"
#include "VelmoraCore/Song/Pattern.h"

namespace velmora {

/// The musical rules that turn patterns and clips into events. Main thread.
struct EventCompiler {
  /// Appends the notes of a pattern as pattern mode plays them: every off event lies strictly inside the
  /// cycle.
  static void appendPattern(std::vector<NoteEvent>& events, const Pattern& pattern);

  /// Appends the notes of a pattern as a clip of the timeline plays them: tiled, cut at the end of each tile
  /// and of the clip.
  static void appendClip(std::vector<NoteEvent>& events, const Clip& clip, const Pattern& pattern);
};

}  // namespace velmora
