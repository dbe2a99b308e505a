#pragma once

#include <atomic>
#include <cstdint>
#include <cubeb/cubeb.h>
#include <memory>
#include <string>
#include <vector>

#include "Platform/Audio/StreamFeed.h"

namespace platform {

/// A connection to the sound server, and one stream that runs on it and follows the default device. Each
/// direction takes a connection of its own: two streams on one can starve each other.
///
/// Everything that isn't marked otherwise asks the server and waits for its answer, half a minute if it
/// hangs: for a `ControlThread`. A stream that has failed can only be destroyed, with its whole connection.
class CubebStream {
 public:
  /// Opens in stereo on the default output at the rate that it prefers, and starts. Null if there is no
  /// output, or if `backend` names a way to reach one and only another was found.
  static std::unique_ptr<CubebStream> openOutput(std::shared_ptr<StreamFeed> feed,
                                                 const std::string& backend);
  /// Opens in mono on the default input, to whose frames the server gives the rate in Hz, and starts. Null if
  /// there is no input.
  static std::unique_ptr<CubebStream> openInput(std::shared_ptr<StreamFeed> feed, std::uint32_t rate);
  ~CubebStream();
  CubebStream(const CubebStream&) = delete;
  CubebStream& operator=(const CubebStream&) = delete;

  /// The rate that the device under the stream prefers now; 0 if that is no real device. Cheap as long as the
  /// devices stay.
  double preferredRate();
  /// Whether the device under the stream is another one than `preferredRate` or the opening found.
  bool hasMoved();

  /// Any thread. In Hz.
  double sampleRate() const noexcept { return rate_; }
  /// Any thread. The way by which the device is reached.
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

  CubebStream(cubeb_device_type direction, std::shared_ptr<StreamFeed> feed)
      : direction_(direction), feed_(std::move(feed)) {}
  bool isInput() const { return direction_ == CUBEB_DEVICE_TYPE_INPUT; }
  bool connect(const std::string& backend);
  bool openAtPreferredRate();
  bool openStream(std::uint32_t rate);
  void closeStream();
  bool begin();
  bool namesDevices() const { return backend_ == "pulse"; }
  std::uint32_t defaultRate() const;  // 0 if there is no device
  std::string currentDevice() const;
  std::vector<Device> realDevices() const;

  static long onData(cubeb_stream*, void* self, const void* input, void* output, long frameCount) noexcept;
  static void onState(cubeb_stream*, void* self, cubeb_state state) noexcept;
  static void onDevicesChanged(cubeb*, void* self) noexcept;

  const cubeb_device_type direction_;
  std::shared_ptr<StreamFeed> feed_;
  cubeb* context_ = nullptr;
  cubeb_stream* stream_ = nullptr;
  std::string backend_;
  std::string device_;  // under the stream when last looked at
  std::uint32_t rate_ = 0;
  bool hasClaimedPriority_ = false;  // of the audio thread
  std::atomic<bool> hasFailed_{false};
  std::atomic<bool> haveDevicesChanged_{false};
};

}  // namespace platform
