#pragma once

#include <cmath>
#include <cstdlib>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>

#include "Platform/Files/FileError.h"
#include "Velmora/Audio/AudioFileLoader.h"

namespace velmora {

/// How far a file comes as audio.
enum class AudioFileFuzzOutcome { undecodable, unsupported, loaded };

/// A file in memory alone, with a path as long as it lives.
class MemoryFile {
 public:
  explicit MemoryFile(std::string_view bytes) : number_(::memfd_create("audio", MFD_CLOEXEC)) {
    if (::write(number_, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) std::abort();
  }
  ~MemoryFile() { ::close(number_); }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  std::string path() const { return "/proc/self/fd/" + std::to_string(number_); }

 private:
  int number_;
};

/// Decodes bytes as an audio file. What loads must keep every limit, and what doesn't must say so in one
/// line; otherwise the process aborts. Errors other than the two that decoding has escape.
inline AudioFileFuzzOutcome audioFileFuzzCase(std::string_view bytes) {
  const MemoryFile file(bytes);
  try {
    const LoadedAudio audio = AudioFileLoader::decode(file.path());
    const auto& [samples, sampleRate] = *audio.sample;
    bool isSound = audio.channelCount == 1 || audio.channelCount == 2;
    isSound = isSound && sampleRate >= 8000 && sampleRate <= 192000;
    isSound = isSound && !samples.empty() && samples.size() <= 30000000;
    isSound = isSound && static_cast<double>(samples.size()) <= 600 * sampleRate;
    for (const float sample : samples) isSound = isSound && std::abs(sample) <= 1.0F;
    if (!isSound) std::abort();
    return AudioFileFuzzOutcome::loaded;
  } catch (const AudioFileError&) {
    return AudioFileFuzzOutcome::unsupported;
  } catch (const platform::FileError& error) {
    const std::string_view line = error.what();
    const std::size_t colon = line.find(": ");
    if (colon == std::string_view::npos || line.size() <= colon + 2 || line.find('\n') != line.npos)
      std::abort();
    return AudioFileFuzzOutcome::undecodable;
  }
}

}  // namespace velmora
