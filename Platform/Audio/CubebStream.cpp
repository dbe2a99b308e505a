#include "Platform/Audio/CubebStream.h"

#include <algorithm>
#include <utility>

namespace platform {
namespace {

constexpr char applicationName[] = "Velmora";
constexpr char deviceOfNoDevice[] = "auto_null";  // what servers put in place of the last device
constexpr std::uint32_t latencyMilliseconds = 25;
constexpr std::uint32_t maximumRate = 192000;  // that streams can have

std::uint32_t usableRate(std::uint32_t preferred) { return std::min(preferred, maximumRate); }

}  // namespace

std::unique_ptr<CubebStream> CubebStream::open(std::shared_ptr<OutputFeed> feed, const std::string& backend) {
  std::unique_ptr<CubebStream> stream(new CubebStream(std::move(feed)));
  if (!stream->connect(backend) || !stream->openAtPreferredRate() || !stream->begin()) return nullptr;
  return stream;
}

/// In this order and no other: a connection with a stream or with a callback aborts when it is destroyed.
CubebStream::~CubebStream() {
  const bool hasBegun = stream_;
  closeStream();
  if (hasBegun)
    cubeb_register_device_collection_changed(context_, CUBEB_DEVICE_TYPE_OUTPUT, nullptr, nullptr);
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
  cubeb_stream_params parameters{CUBEB_SAMPLE_FLOAT32NE, rate, 2, CUBEB_LAYOUT_STEREO,
                                 CUBEB_STREAM_PREF_NONE};
  return cubeb_stream_init(context_, &stream_, applicationName, nullptr, nullptr, nullptr, &parameters,
                           rate * latencyMilliseconds / 1000, onData, onState, this) == CUBEB_OK;
}

void CubebStream::closeStream() {
  if (!stream_) return;
  cubeb_stream_stop(stream_);
  cubeb_stream_destroy(std::exchange(stream_, nullptr));
}

/// Only now that the stream stands: on a connection that failed to open one nothing may be registered.
bool CubebStream::begin() {
  cubeb_register_device_collection_changed(context_, CUBEB_DEVICE_TYPE_OUTPUT, onDevicesChanged, this);
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
  if (name == deviceOfNoDevice) return 0;
  if (name == device_ && !haveChanged) return rate_;
  device_ = name;
  const auto devices = realDevices();
  const auto device = std::ranges::find(devices, name, &Device::name);
  return device == devices.end() ? rate_ : usableRate(device->rate);
}

std::string CubebStream::currentDevice() const {
  cubeb_device* device = nullptr;
  if (cubeb_stream_get_current_device(stream_, &device) != CUBEB_OK) return {};
  std::string name = device->output_name ? device->output_name : "";
  cubeb_stream_device_destroy(stream_, device);
  return name;
}

std::vector<CubebStream::Device> CubebStream::realDevices() const {
  cubeb_device_collection collection{};
  if (cubeb_enumerate_devices(context_, CUBEB_DEVICE_TYPE_OUTPUT, &collection) != CUBEB_OK) return {};
  std::vector<Device> devices;
  for (std::size_t i = 0; i < collection.count; ++i) {
    const cubeb_device_info& device = collection.device[i];
    if (device.device_id && std::string(device.device_id) != deviceOfNoDevice)
      devices.push_back({device.device_id, device.default_rate, device.preferred != CUBEB_DEVICE_PREF_NONE});
  }
  cubeb_device_collection_destroy(context_, &collection);
  return devices;
}

/// [audio thread] All that was asked for is written always: less would end the stream.
long CubebStream::onData(cubeb_stream*, void* self, const void*, void* output, long frameCount) noexcept {
  const auto& stream = *static_cast<CubebStream*>(self);
  stream.feed_->fill(static_cast<float*>(output), static_cast<int>(frameCount), stream.rate_);
  return frameCount;
}

void CubebStream::onState(cubeb_stream*, void* self, cubeb_state state) noexcept {
  if (state == CUBEB_STATE_ERROR) static_cast<CubebStream*>(self)->hasFailed_ = true;
}

void CubebStream::onDevicesChanged(cubeb*, void* self) noexcept {
  static_cast<CubebStream*>(self)->haveDevicesChanged_ = true;
}

}  // namespace platform
