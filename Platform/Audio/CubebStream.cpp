#include "Platform/Audio/CubebStream.h"

#include <algorithm>
#include <sched.h>
#include <utility>

namespace platform {
namespace {

constexpr char applicationName[] = "Velmora";
constexpr std::uint32_t latencyMilliseconds = 25;
constexpr std::uint32_t maximumRate = 192000;  // that streams can have

/// What servers put in place of the last device.
bool isRealDevice(const std::string& name) { return name != "auto_null" && name != "auto_null.monitor"; }

/// [audio thread] Lets the calling thread run before all ordinary ones, where the user may do so.
void claimRealtimePriority() noexcept {
  constexpr int lowPriority = 10;  // below what drivers and servers use
  const sched_param parameters{.sched_priority = lowPriority};
  ::sched_setscheduler(0, SCHED_RR | SCHED_RESET_ON_FORK, &parameters);
}

std::uint32_t usableRate(std::uint32_t preferred) { return std::min(preferred, maximumRate); }

}  // namespace

std::unique_ptr<CubebStream> CubebStream::openOutput(std::shared_ptr<StreamFeed> feed,
                                                     const std::string& backend) {
  std::unique_ptr<CubebStream> stream(new CubebStream(CUBEB_DEVICE_TYPE_OUTPUT, std::move(feed)));
  if (!stream->connect(backend) || !stream->openAtPreferredRate() || !stream->begin()) return nullptr;
  return stream;
}

std::unique_ptr<CubebStream> CubebStream::openInput(std::shared_ptr<StreamFeed> feed, std::uint32_t rate) {
  std::unique_ptr<CubebStream> stream(new CubebStream(CUBEB_DEVICE_TYPE_INPUT, std::move(feed)));
  const bool isOpen = stream->connect({}) && stream->defaultRate() != 0 && stream->openStream(rate);
  if (!isOpen || !stream->begin()) return nullptr;
  stream->device_ = stream->currentDevice();
  return stream;
}

/// In this order and no other: a connection with a stream or with a callback aborts when it is destroyed.
CubebStream::~CubebStream() {
  const bool hasBegun = stream_;
  closeStream();
  if (hasBegun) cubeb_register_device_collection_changed(context_, direction_, nullptr, nullptr);
  if (context_) cubeb_destroy(context_);
}

/// Without a server this succeeds, too, by a backend that can open nothing.
bool CubebStream::connect(const std::string& backend) {
  if (cubeb_init(&context_, applicationName, nullptr) != CUBEB_OK) return false;
  backend_ = cubeb_get_backend_id(context_);
  return backend.empty() || backend == backend_;
}

/// The server may put the stream on another device than the default one, where the user last sent it.
bool CubebStream::openAtPreferredRate() {
  if (!openStream(defaultRate())) return false;
  const auto preferred = static_cast<std::uint32_t>(preferredRate());
  if (preferred == rate_) return true;
  closeStream();
  return openStream(preferred);
}

bool CubebStream::openStream(std::uint32_t rate) {
  if (rate == 0) return false;
  rate_ = rate;
  cubeb_stream_params mono{CUBEB_SAMPLE_FLOAT32NE, rate, 1, CUBEB_LAYOUT_MONO, CUBEB_STREAM_PREF_NONE};
  cubeb_stream_params stereo{CUBEB_SAMPLE_FLOAT32NE, rate, 2, CUBEB_LAYOUT_STEREO, CUBEB_STREAM_PREF_NONE};
  return cubeb_stream_init(context_, &stream_, applicationName, nullptr, isInput() ? &mono : nullptr, nullptr,
                           isInput() ? nullptr : &stereo, rate * latencyMilliseconds / 1000, onData, onState,
                           this) == CUBEB_OK;
}

void CubebStream::closeStream() {
  if (!stream_) return;
  cubeb_stream_stop(stream_);
  cubeb_stream_destroy(std::exchange(stream_, nullptr));
}

/// Only now that the stream stands: on a connection that failed to open one nothing may be registered.
bool CubebStream::begin() {
  cubeb_register_device_collection_changed(context_, direction_, onDevicesChanged, this);
  return cubeb_stream_start(stream_) == CUBEB_OK;
}

std::uint32_t CubebStream::defaultRate() const {
  if (!namesDevices()) {
    std::uint32_t rate = 0;
    return cubeb_get_preferred_sample_rate(context_, &rate) == CUBEB_OK ? usableRate(rate) : 0;
  }
  const auto devices = realDevices();
  const auto device = std::ranges::find_if(devices, &Device::isDefault);
  return device == devices.end() ? 0 : usableRate(device->rate);
}

/// A device that isn't in the list has gone this moment; where the stream goes the next look tells.
double CubebStream::preferredRate() {
  const bool haveChanged = haveDevicesChanged_.exchange(false, std::memory_order_relaxed);
  if (!namesDevices() || hasFailed()) return rate_;
  const std::string name = currentDevice();
  if (!isRealDevice(name)) return 0;
  if (name == device_ && !haveChanged) return rate_;
  device_ = name;
  const auto devices = realDevices();
  const auto device = std::ranges::find(devices, name, &Device::name);
  return device == devices.end() ? rate_ : usableRate(device->rate);
}

bool CubebStream::hasMoved() {
  haveDevicesChanged_.store(false, std::memory_order_relaxed);
  return namesDevices() && !hasFailed() && currentDevice() != device_;
}

std::string CubebStream::currentDevice() const {
  cubeb_device* device = nullptr;
  if (cubeb_stream_get_current_device(stream_, &device) != CUBEB_OK) return {};
  const char* name = isInput() ? device->input_name : device->output_name;
  std::string copy = name ? name : "";
  cubeb_stream_device_destroy(stream_, device);
  return copy;
}

std::vector<CubebStream::Device> CubebStream::realDevices() const {
  cubeb_device_collection collection{};
  if (cubeb_enumerate_devices(context_, direction_, &collection) != CUBEB_OK) return {};
  std::vector<Device> devices;
  for (std::size_t i = 0; i < collection.count; ++i) {
    const cubeb_device_info& device = collection.device[i];
    if (device.device_id && isRealDevice(device.device_id))
      devices.push_back({device.device_id, device.default_rate, device.preferred != CUBEB_DEVICE_PREF_NONE});
  }
  cubeb_device_collection_destroy(context_, &collection);
  return devices;
}

/// [audio thread] All frames are read or written always: fewer would end the stream.
long CubebStream::onData(cubeb_stream*, void* self, const void* input, void* output,
                         long frameCount) noexcept {
  auto& stream = *static_cast<CubebStream*>(self);
  if (!std::exchange(stream.hasClaimedPriority_, true)) claimRealtimePriority();
  stream.feed_->exchange(static_cast<const float*>(input), static_cast<float*>(output),
                         static_cast<int>(frameCount), stream.rate_);
  return frameCount;
}

void CubebStream::onState(cubeb_stream*, void* self, cubeb_state state) noexcept {
  if (state == CUBEB_STATE_ERROR) static_cast<CubebStream*>(self)->hasFailed_ = true;
}

void CubebStream::onDevicesChanged(cubeb*, void* self) noexcept {
  static_cast<CubebStream*>(self)->haveDevicesChanged_ = true;
}

}  // namespace platform
