#pragma once

#include <filesystem>
#include <functional>
#include <stdexcept>

namespace platform {

/// The desktop doesn't let this program listen.
struct AccessDenied : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Records the desktop's microphone to a file: CAF, 44100 Hz, mono, 32-bit float. Main thread.
class InputRecorder {
 public:
  virtual ~InputRecorder() = default;

  /// Records to a new file for at most `longestSeconds`. Throws `AccessDenied`, `DeviceError`, `FileError`.
  virtual void start(const std::filesystem::path& file, double longestSeconds) = 0;

  /// Ends the recording; the file can be opened once it returns. False if the disk didn't take all of it.
  virtual bool stop() = 0;

  /// Seconds recorded so far.
  virtual double currentTime() const = 0;

  /// Called when a recording ends by itself: cleanly after its longest time, otherwise because the microphone
  /// or the disk failed. Never for a `stop`.
  void setOnFinished(std::function<void(bool isClean)> onFinished) { onFinished_ = std::move(onFinished); }

 protected:
  void tellFinished(bool isClean) const {
    if (onFinished_) onFinished_(isClean);
  }

 private:
  std::function<void(bool)> onFinished_;
};

}  // namespace platform
