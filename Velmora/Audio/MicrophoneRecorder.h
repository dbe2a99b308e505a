#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <stdexcept>

#include "Platform/Audio/InputRecorder.h"

namespace velmora {

/// Why a take can't begin.
struct RecordingError : std::runtime_error {
  using std::runtime_error::runtime_error;
  static RecordingError permission() {
    return RecordingError("Allow microphone access for Velmora in System Settings to record.");
  }
  static RecordingError failed() {
    return RecordingError("Recording could not start. Check that a microphone is connected.");
  }
};

/// Takes from the microphone, one at a time, of at most ten minutes. Main thread.
class MicrophoneRecorder {
 public:
  static constexpr double longestTakeSeconds = 600;

  /// Without an input every start fails.
  explicit MicrophoneRecorder(std::unique_ptr<platform::InputRecorder> input);

  bool hasInput() const { return input_ != nullptr; }

  /// Throws `RecordingError` and the errors of the file.
  void start(const std::filesystem::path& url);
  /// False if the disk didn't take the whole take.
  bool stop();
  double currentTime() const;

  /// Hears of takes that end by themselves: true for a clean end.
  void setOnFinished(std::function<void(bool isClean)> onFinished);

 private:
  const std::unique_ptr<platform::InputRecorder> input_;
};

}  // namespace velmora
