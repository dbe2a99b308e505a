#pragma once

#include <QCoroTask>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <stop_token>

#include "Platform/Tasks/SerialWorker.h"
#include "VelmoraCore/Render/AudioSample.h"

namespace velmora {

/// A sound file that decodes but can't be used.
struct AudioFileError : std::runtime_error {
  AudioFileError() : std::runtime_error("Choose a mono or stereo audio file up to 10 minutes long.") {}
};

/// A decoded file: mono whatever the file is, at the file's own rate, and the file's channels.
struct LoadedAudio {
  std::shared_ptr<const AudioSample> sample;
  int channelCount = 0;
};

/// Decodes sound files whole into memory, one at a time on a worker of its own.
class AudioFileLoader {
 public:
  /// Decodes on the worker; the task ends with the result or the error of `decode`.
  QCoro::Task<LoadedAudio> load(std::filesystem::path path, std::stop_token stop = {});

  /// Decodes on the calling thread. Takes files of 1 or 2 channels, 8000 to 192000 Hz, at most 600 seconds
  /// and 30000000 frames. Throws `AudioFileError` for others, `platform::FileError`, and
  /// `platform::Cancelled` soon after a stop was requested.
  static LoadedAudio decode(const std::filesystem::path& path, const std::stop_token& stop = {});

 private:
  platform::SerialWorker worker_;
};

}  // namespace velmora
