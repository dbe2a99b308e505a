#pragma once

#include <cstdint>

namespace velmora {

/// What the studio offers to count: features used and categories of errors, never content.
enum class TelemetryEvent : std::uint8_t {
  appActive,
  studioOpened,
  playbackStarted,
  projectCreated,
  projectOpened,
  audioImported,
  recordingSaved,
  wavExported,
  arrangementOpened,
  patternOpened,
  mixerOpened,
  communityOpened,
  accountRefreshFailed,
  audioEngineFailed,
  projectSaveFailed,
  projectLoadFailed,
  audioImportFailed,
  recordingFailed,
  wavExportFailed,
};

/// Takes the events that the studio offers; nothing waits on it. Main thread.
class TelemetrySink {
 public:
  virtual ~TelemetrySink() = default;
  virtual void record(TelemetryEvent event) = 0;
};

/// Hears everything and says nothing.
class SilentTelemetry final : public TelemetrySink {
 public:
  void record(TelemetryEvent) override {}
};

}  // namespace velmora
