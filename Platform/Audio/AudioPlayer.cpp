#include "Platform/Audio/AudioPlayer.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "Platform/Audio/AudioFile.h"
#include "Platform/Audio/SincInterpolator.h"
#include "Platform/Files/FileError.h"

namespace platform {
namespace {

constexpr int lowestRate = 8000;
constexpr int highestRate = 192000;
constexpr std::int64_t longestSeconds = 600;
constexpr std::size_t mostFrames = 30000000;  // at any rate
constexpr int blockSamples = 65536;

/// A sound in memory; a mono one has no right side of its own.
struct Sound {
  double sampleRate = 0;
  std::vector<float> left, ownRight;

  const float* right() const noexcept { return ownRight.empty() ? left.data() : ownRight.data(); }
  std::int64_t frameCount() const noexcept { return static_cast<std::int64_t>(left.size()); }
};

float usable(float value) { return std::isfinite(value) ? std::clamp(value, -1.0F, 1.0F) : 0.0F; }

/// Decodes the first two channels, and no more of a long sound than `longestSeconds` and `mostFrames`.
Sound decode(AudioFileReader& file, const std::filesystem::path& name) {
  const int rate = file.sampleRate();
  if (rate < lowestRate || rate > highestRate) throw FileError(name, "Unsupported sample rate");
  const auto channelCount = static_cast<std::size_t>(file.channelCount());
  const std::size_t limit = std::min(static_cast<std::size_t>(longestSeconds * rate), mostFrames);
  Sound sound{static_cast<double>(rate), {}, {}};
  std::vector<float> block(std::max<std::size_t>(1, blockSamples / channelCount) * channelCount);
  while (sound.left.size() < limit) {
    const std::size_t count = std::min(file.read(block), limit - sound.left.size());
    if (count == 0) break;
    for (std::size_t i = 0; i < count; ++i) {
      sound.left.push_back(usable(block[i * channelCount]));
      if (channelCount > 1) sound.ownRight.push_back(usable(block[i * channelCount + 1]));
    }
  }
  if (sound.left.empty()) throw FileError(name, "No sound in it");
  return sound;
}

class SoundPlayer final : public AudioPlayer, private OutputSource {
 public:
  SoundPlayer(Sound sound, std::unique_ptr<OutputDevice> output)
      : sound_(std::move(sound)), output_(std::move(output)) {
    if (output_) output_->setOnChange([this] { goOn(); });
  }
  ~SoundPlayer() override { silence(); }
  SoundPlayer(const SoundPlayer&) = delete;
  SoundPlayer& operator=(const SoundPlayer&) = delete;

  double duration() const override { return static_cast<double>(sound_.frameCount()) / sound_.sampleRate; }

  bool prepare() override { return output_ && output_->sampleRate() > 0; }

  bool play() override {
    stop();
    position_ = 0;
    if (output_ && goOn()) return true;
    stop();
    return false;
  }

  void stop() override { silence(); }

 private:
  void silence() noexcept {
    if (output_) output_->stop();
  }

  /// Plays from where it is. If that fails the output looks for a device and tells when it has one.
  bool goOn() {
    const double rate = output_->sampleRate();
    step_ = rate > 0 ? sound_.sampleRate / rate : 1;
    interpolator_.reset();
    if (step_ != 1) interpolator_.emplace(step_);
    start_ = step_ == 1 ? std::floor(position_.load()) : position_.load();
    try {
      output_->start(*this);
      return true;
    } catch (const DeviceError&) {
      return false;
    }
  }

  void render(double sampleTime, int frameCount, float* left, float* right) noexcept override {
    const double position = start_ + sampleTime * step_;
    if (interpolator_) {
      for (int i = 0; i < frameCount; ++i) {
        const auto frame =
            interpolator_->at(position + i * step_, sound_.left.data(), sound_.right(), sound_.frameCount());
        left[i] = frame.left;
        right[i] = frame.right;
      }
    } else {
      copy(static_cast<std::int64_t>(position), frameCount, left, right);
    }
    position_.store(position + frameCount * step_, std::memory_order_relaxed);
  }

  /// [audio thread]
  void copy(std::int64_t first, int frameCount, float* left, float* right) const noexcept {
    const auto count = static_cast<int>(std::clamp<std::int64_t>(sound_.frameCount() - first, 0, frameCount));
    if (count > 0) {
      std::copy_n(sound_.left.data() + first, count, left);
      std::copy_n(sound_.right() + first, count, right);
    }
    std::fill(left + count, left + frameCount, 0.0F);
    std::fill(right + count, right + frameCount, 0.0F);
  }

  const Sound sound_;
  const std::unique_ptr<OutputDevice> output_;
  // Written while nothing plays. Positions count frames of the sound.
  std::optional<SincInterpolator> interpolator_;  // none at the sound's own rate
  double step_ = 1;
  double start_ = 0;
  std::atomic<double> position_{0};
};

}  // namespace

std::unique_ptr<AudioPlayer> AudioPlayer::fromFile(const std::filesystem::path& path,
                                                   std::unique_ptr<OutputDevice> output) {
  AudioFileReader file(path);
  return std::make_unique<SoundPlayer>(decode(file, path), std::move(output));
}

std::unique_ptr<AudioPlayer> AudioPlayer::fromBytes(const QByteArray& bytes,
                                                    std::unique_ptr<OutputDevice> output) {
  const std::filesystem::path name = "sound";
  AudioFileReader file({bytes.data(), static_cast<std::size_t>(bytes.size())}, name);
  return std::make_unique<SoundPlayer>(decode(file, name), std::move(output));
}

}  // namespace platform
