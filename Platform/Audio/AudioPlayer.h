#pragma once

#include <QByteArray>
#include <filesystem>
#include <memory>

#include "Platform/Audio/OutputDevice.h"

namespace platform {

/// Plays one sound once, from its beginning, on an output of its own. Main thread.
class AudioPlayer {
 public:
  /// Decodes the whole sound. Throws `FileError` when it can't be read.
  static std::unique_ptr<AudioPlayer> fromFile(const std::filesystem::path& path,
                                               std::unique_ptr<OutputDevice> output);
  static std::unique_ptr<AudioPlayer> fromBytes(const QByteArray& bytes,
                                                std::unique_ptr<OutputDevice> output);

  virtual ~AudioPlayer() = default;

  /// In seconds.
  virtual double duration() const = 0;

  /// Makes the output ready; false if there is none.
  virtual bool prepare() = 0;
  /// False if no sound comes.
  virtual bool play() = 0;
  virtual void stop() = 0;
};

}  // namespace platform
