#pragma once

#include <QTimer>
#include <chrono>
#include <cstdint>
#include <future>
#include <memory>

#include "Platform/Audio/ControlThread.h"
#include "Platform/Audio/CubebStream.h"
#include "Platform/Audio/FlowWatch.h"
#include "Platform/Audio/InputFeed.h"
#include "Platform/Audio/InputRecorder.h"
#include "Platform/Audio/RecordingWriter.h"

namespace platform {

/// Records the default input of the desktop's sound server.
///
/// The connection exists only while it records. The callback leaves its frames in a ring, from which a thread
/// writes them; twenty times a second the main thread looks whether all is well. A recording ends by itself,
/// and its file is whole, when its device goes or gives way to another, when the server or the disk fails, or
/// when sound stops flowing. As in `CubebOutput` the server is spoken to on a thread of its own, and `start`
/// waits for it for `patience` at most.
class CubebInput final : public InputRecorder {
 public:
  static constexpr int sampleRate = 44100;  // Hz
  static constexpr std::chrono::milliseconds patience{1000};

  CubebInput();
  ~CubebInput() override;
  CubebInput(const CubebInput&) = delete;
  CubebInput& operator=(const CubebInput&) = delete;

  /// Returns once the input flows, or could flow: a device that sleeps gets longer to wake up.
  void start(const std::filesystem::path& file, double longestSeconds) override;
  /// Tells on standard error of frames that were lost.
  bool stop() override;
  double currentTime() const override;

  /// How many frames the last recording lacks, because the server dropped them or the disk was too slow.
  std::int64_t lostFrames() const { return feed_ ? feed_->lostFrames() : 0; }

 private:
  using Clock = std::chrono::steady_clock;

  static constexpr std::chrono::milliseconds beatLength{50};
  static constexpr std::chrono::seconds lookDistance{1};

  std::unique_ptr<CubebStream> open();
  void beat();
  bool isBroken(Clock::time_point now);
  bool isOnAnotherDevice(Clock::time_point now);
  void finish(bool isClean);

  std::shared_ptr<InputFeed> feed_;      // of the last recording
  std::unique_ptr<CubebStream> stream_;  // destroyed on the control thread only
  std::unique_ptr<RecordingWriter> writer_;
  std::future<bool> looking_;
  FlowWatch flow_;
  Clock::time_point lastBeat_;
  Clock::time_point nextLook_;
  QTimer timer_;
  ControlThread thread_;  // the last member, as its jobs use nothing else of this
};

}  // namespace platform
