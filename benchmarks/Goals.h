#pragma once

#include "benchmarks/Report.h"

namespace velmora::benchmarks {

/// velmora-render as a process: memory and start. First of all, while this process is small.
void measureTool(Report& report);

/// Renders of the fixed work to a file, against the plain scalar synthesizer and against each other.
void measureRenders(Report& report);

/// The live graph's worst blocks.
void measureLiveBlocks(Report& report);

/// Copies, compiles and loads of large songs.
void measureDocument(Report& report);

/// Commands of the application model.
void measureModel(Report& report);

/// What the views paint and how they follow a hand.
void measureViews(Report& report);

/// The window as it is resized, and the library of many projects.
void measureShell(Report& report);

/// The windows of the online services.
void measureOnline(Report& report);

/// The overview of a long sound file, and drawing it.
void measureWaveform(Report& report);

}  // namespace velmora::benchmarks
