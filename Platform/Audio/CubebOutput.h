#pragma once

#include <QTimer>
#include <chrono>
#include <cstdint>
#include <future>
#include <memory>
#include <optional>
#include <string>

#include "Platform/Audio/BackOff.h"
#include "Platform/Audio/ControlThread.h"
#include "Platform/Audio/CubebStream.h"
#include "Platform/Audio/FlowWatch.h"
#include "Platform/Audio/OutputDevice.h"
#include "Platform/Audio/OutputFeed.h"

namespace platform {

/// The default output of the desktop's sound server.
///
/// The stream runs from the moment that somebody asks for the sample rate, on silence until `start`. Twenty
/// times a second the main thread looks whether it still flows: callbacks of the server only leave marks. The
/// server itself is spoken to on a thread of its own, as each call hangs when the server does. The main
/// thread waits for an answer once, for `patience` at most, when it first asks for an output.
class CubebOutput final : public OutputDevice {
 public:
  static constexpr std::chrono::milliseconds patience{1000};

  CubebOutput();
  ~CubebOutput() override;
  CubebOutput(const CubebOutput&) = delete;
  CubebOutput& operator=(const CubebOutput&) = delete;

  double sampleRate() override;
  void start(OutputSource& source) override;
  void stop() noexcept override;

  /// Any thread. How many callbacks came late while something played: more than two of the usual gaps after
  /// the one before.
  std::uint64_t lateCallbacks() const noexcept { return feed_->lateCallbacks(); }

 private:
  using Clock = std::chrono::steady_clock;
  enum class Phase { resting, playing, searching };
  enum class Loss { stalled, gone };

  static constexpr std::chrono::milliseconds beatLength{50};
  static constexpr std::chrono::seconds lookDistance{1};
  static constexpr std::chrono::seconds longestStall{5};  // then a new stream may do better

  void beat();
  void rest();
  void watch(Clock::time_point now);
  void seek(Clock::time_point now);
  void heedDevice(double preferredRate);
  bool hasOutput() const { return stream_ && !stream_->hasFailed(); }

  void awaitOpened();
  void beginOpening();
  void takeOpened();
  void close();
  void search();
  void lose(Loss loss);
  void changeRate();

  std::shared_ptr<OutputFeed> feed_ = std::make_shared<OutputFeed>();
  std::unique_ptr<CubebStream> stream_;  // destroyed on the control thread only
  std::future<std::unique_ptr<CubebStream>> opening_;
  std::future<double> looking_;
  std::string backend_;  // that has worked once: any other found after it is a makeshift
  Phase phase_ = Phase::resting;
  std::optional<double> toldRate_;
  bool isLossTold_ = false;
  bool mustFlow_ = false;  // to be opened is no proof, as the device that was lost is still there
  FlowWatch flow_;
  BackOff backOff_;
  Clock::time_point lastBeat_;
  Clock::time_point nextLook_;
  QTimer timer_;
  ControlThread thread_;  // the last member, as its jobs use nothing else of this
};

}  // namespace platform
