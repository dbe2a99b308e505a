#pragma once

#include <functional>
#include <stdexcept>

namespace platform {

/// Why no sound comes: one line in words.
struct DeviceError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// What an output plays.
class OutputSource {
 public:
  virtual ~OutputSource() = default;

  /// [audio thread] Writes `frameCount` frames, any number from 1 up, to both sides. `sampleTime` counts
  /// frames since the device's start and has no gaps.
  virtual void render(double sampleTime, int frameCount, float* left, float* right) noexcept = 0;
};

/// The desktop's stereo output. All calls and callbacks but `OutputSource::render` are the main thread's.
class OutputDevice {
 public:
  virtual ~OutputDevice() = default;

  /// The rate in Hz that the device prefers; 0 while there is none. May connect to the sound server.
  virtual double sampleRate() = 0;

  /// Plays `source`, which must live until `stop`, at `sampleRate()`. Throws `DeviceError`; the device then
  /// looks for an output by itself and tells of it through `onChange`. Not while it plays.
  virtual void start(OutputSource& source) = 0;

  /// Once it returns the source isn't called again. Ends the search for an output, too.
  virtual void stop() noexcept = 0;

  /// Called when, after a `start`, the output was lost, came back or changed its rate. Nothing plays by then:
  /// whoever wants sound calls `start` anew, which throws as long as there is no output.
  void setOnChange(std::function<void()> onChange) { onChange_ = std::move(onChange); }

 protected:
  void tellChange() const {
    if (onChange_) onChange_();
  }

 private:
  std::function<void()> onChange_;
};

}  // namespace platform
