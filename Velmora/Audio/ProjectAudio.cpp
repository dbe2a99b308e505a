#include "Velmora/Audio/ProjectAudio.h"

namespace velmora {

AudioBudget::AudioBudget(const AudioSamples& samples) {
  for (const auto& [id, sample] : samples) {
    seconds_ += static_cast<double>(sample->samples.size()) / sample->sampleRate;
    frames_ += static_cast<std::int64_t>(sample->samples.size());
  }
}

void AudioBudget::add(const AudioSample& sample) {
  const double seconds = seconds_ + static_cast<double>(sample.samples.size()) / sample.sampleRate;
  const std::int64_t frames = frames_ + static_cast<std::int64_t>(sample.samples.size());
  if (!(seconds <= mostSeconds) || frames > mostFrames) throw AudioError();
  seconds_ = seconds;
  frames_ = frames;
}

QCoro::Task<ProjectAudio> ProjectAudio::load(SharedList<AudioAsset> assets, std::filesystem::path folder,
                                             AudioFileLoader& loader) {
  ProjectAudio audio;
  AudioBudget budget;
  try {
    for (const AudioAsset& asset : assets) {
      auto task = loader.load(folder / asset.fileName);
      const LoadedAudio loaded = co_await task;
      budget.add(*loaded.sample);
      audio.samples.insert_or_assign(asset.id, loaded.sample);
    }
  } catch (const std::exception&) {
    audio.error = std::current_exception();
  }
  co_return audio;
}

}  // namespace velmora
