#pragma once

#include <atomic>
#include <cstdint>
#include <cubeb/cubeb.h>
#include <memory>
#include <string>
#include <vector>

#include "Platform/Audio/OutputFeed.h"

namespace platform {

/// A connection to the sound server, and one stereo stream that runs on it and follows the default device.
///
/// Everything that isn't marked otherwise asks the server and waits for its answer, half a minute if it
/// hangs: for a `ControlThread`. A stream that has failed can only be destroyed, with its whole connection.
class CubebStream {
 public:
  /// Opens on the default device at the rate that it prefers, and starts. Null if there is no output, or if
  /// `backend` names a way to reach one and only another was found.
  static std::unique_ptr<CubebStream> open(std::shared_ptr<OutputFeed> feed, const std::string& backend);
  ~CubebStream();
  CubebStream(const CubebStream&) = delete;
  CubebStream& operator=(const CubebStream&) = delete;

  /// The rate that the device under the stream prefers now; 0 if that is no real device. Cheap as long as the
  /// devices stay.
  double preferredRate();

  /// Any thread. In Hz.
  double sampleRate() const noexcept { return rate_; }
  /// Any thread. The way by which the output is reached.
  const std::string& backend() const noexcept { return backend_; }
  /// Any thread. The server or the last device is gone.
  bool hasFailed() const noexcept { return hasFailed_.load(std::memory_order_relaxed); }
  /// Any thread. A device came or went.
  bool haveDevicesChanged() const noexcept { return haveDevicesChanged_.load(std::memory_order_relaxed); }

 private:
  struct Device {
    std::string name;
    std::uint32_t rate;
    bool isDefault;
  };

  explicit CubebStream(std::shared_ptr<OutputFeed> feed) : feed_(std::move(feed)) {}
  bool connect(const std::string& backend);
  bool openAtPreferredRate();
  bool openStream(std::uint32_t rate);
  void closeStream();
  bool begin();
  bool namesDevices() const { return backend_ == "pulse"; }
  std::uint32_t defaultRate() const;
  std::string currentDevice() const;
  std::vector<Device> realDevices() const;

  static long onData(cubeb_stream*, void* self, const void*, void* output, long frameCount) noexcept;
  static void onState(cubeb_stream*, void* self, cubeb_state state) noexcept;
  static void onDevicesChanged(cubeb*, void* self) noexcept;

  std::shared_ptr<OutputFeed> feed_;
  cubeb* context_ = nullptr;
  cubeb_stream* stream_ = nullptr;
  std::string backend_;
  std::string device_;  // under the stream when last looked at
  std::uint32_t rate_ = 0;
  std::atomic<bool> hasFailed_{false};
  std::atomic<bool> haveDevicesChanged_{false};
};

}  // namespace platform
