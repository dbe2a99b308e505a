#include "Velmora/Audio/AudioFileLoader.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "Platform/Audio/AudioFile.h"
#include "Platform/Tasks/Cancelled.h"

namespace velmora {
namespace {

constexpr int lowestRate = 8000;
constexpr int highestRate = 192000;
constexpr int mostChannels = 2;
constexpr std::int64_t mostFrames = 30000000;
constexpr std::int64_t longestSeconds = 600;
constexpr std::size_t blockFrames = 8192;

/// What a byte of a file can plausibly hold. More than that is believed when it has been read.
constexpr std::size_t mostFramesPerByte = 16;

void require(bool isSupported) {
  if (!isSupported) throw AudioFileError();
}

void requireSupported(const platform::AudioFileReader& file) {
  require(file.sampleRate() >= lowestRate && file.sampleRate() <= highestRate);
  require(file.frameCount() <= mostFrames);
  require(file.channelCount() >= 1 && file.channelCount() <= mostChannels);
  require(file.frameCount() >= 1);
  require(file.frameCount() <= longestSeconds * file.sampleRate());
}

float usable(float value) { return std::isfinite(value) ? std::clamp(value, -1.0F, 1.0F) : 0.0F; }

/// Writes the mean of each frame's channels.
void mixDown(std::span<const float> interleaved, int channelCount, float* mono) {
  if (channelCount == 1) {
    std::ranges::transform(interleaved, mono, usable);
    return;
  }
  const std::size_t frames = interleaved.size() / 2;
  for (std::size_t frame = 0; frame < frames; ++frame)
    mono[frame] = usable((interleaved[2 * frame] + interleaved[2 * frame + 1]) / 2);
}

std::vector<float> readMono(platform::AudioFileReader& file, const std::stop_token& stop) {
  const auto channelCount = static_cast<std::size_t>(file.channelCount());
  const auto length = static_cast<std::size_t>(file.frameCount());
  std::vector<float> block(blockFrames * channelCount);
  std::vector<float> samples;
  samples.reserve(std::min(length, mostFramesPerByte * static_cast<std::size_t>(file.byteCount())));
  while (samples.size() < length) {
    if (stop.stop_requested()) throw platform::Cancelled();
    const std::size_t start = samples.size();
    const std::size_t wanted = std::min(length - start, blockFrames);
    const std::size_t count = file.read(std::span(block).first(wanted * channelCount));
    if (count == 0) break;
    samples.resize(start + count);
    mixDown(std::span(block).first(count * channelCount), file.channelCount(), samples.data() + start);
  }
  samples.shrink_to_fit();
  return samples;
}

}  // namespace

QCoro::Task<LoadedAudio> AudioFileLoader::load(std::filesystem::path path, std::stop_token stop) {
  return worker_.run([path = std::move(path), stop = std::move(stop)] { return decode(path, stop); });
}

LoadedAudio AudioFileLoader::decode(const std::filesystem::path& path, const std::stop_token& stop) {
  platform::AudioFileReader file(path);
  requireSupported(file);
  std::vector<float> samples = readMono(file, stop);
  require(!samples.empty());
  const double sampleRate = file.sampleRate();
  return {std::make_shared<const AudioSample>(AudioSample{std::move(samples), sampleRate}),
          file.channelCount()};
}

}  // namespace velmora
