#pragma once

#include <QCoroTask>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <stdexcept>

#include "Velmora/Audio/AudioFileLoader.h"
#include "VelmoraCore/Render/RenderSnapshot.h"
#include "VelmoraCore/Song/Song.h"

namespace velmora {

/// More decoded audio than a project may hold.
struct AudioError : std::runtime_error {
  AudioError() : std::runtime_error("A project can hold up to 30 minutes of decoded audio.") {}
};

/// Counts a project's decoded audio against its limits.
class AudioBudget {
 public:
  static constexpr double mostSeconds = 1800;
  static constexpr std::int64_t mostFrames = 80000000;

  AudioBudget() = default;
  explicit AudioBudget(const AudioSamples& samples);

  /// Throws `AudioError` if the sample is one too many; it isn't counted then.
  void add(const AudioSample& sample);

 private:
  double seconds_ = 0;
  std::int64_t frames_ = 0;
};

/// The decoded audio of a project, as far as it could be loaded.
struct ProjectAudio {
  AudioSamples samples;
  std::exception_ptr error;  ///< what ended the loading early; null if nothing did

  /// Decodes every asset in order and stops at the first error. `folder` is the project's folder of audio
  /// files.
  static QCoro::Task<ProjectAudio> load(SharedList<AudioAsset> assets, std::filesystem::path folder,
                                        AudioFileLoader& loader);
};

}  // namespace velmora
