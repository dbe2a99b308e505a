#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

namespace platform {

struct SoundStream;

/// A sound file that is read from start to end: WAV, AIFF, CAF, FLAC, Ogg, Opus, MP3 and what else libsndfile
/// knows by content, whatever the name says. Blocks on disk; throws `FileError`.
class AudioFileReader {
 public:
  /// Refuses anything but a regular file.
  explicit AudioFileReader(const std::filesystem::path& path);

  /// Reads what lies in memory, of which it takes a copy. `name` is what errors call it.
  AudioFileReader(std::string_view bytes, const std::filesystem::path& name);

  ~AudioFileReader();

  int sampleRate() const;    ///< Hz
  int channelCount() const;  ///< at least 1

  /// The frames that the file promises; a damaged file may hold fewer.
  std::int64_t frameCount() const;

  /// The size of the file in bytes.
  std::int64_t byteCount() const;

  /// Fills the buffer with interleaved whole frames as far as the file goes on, full scale at -1 to 1 but not
  /// limited to it; returns the frames read, 0 at the end.
  std::size_t read(std::span<float> interleaved);

 private:
  std::unique_ptr<SoundStream> stream_;
};

/// A stereo RIFF WAVE file in the making. Blocks on disk; throws `FileError`, also for a disk that is full.
class AudioFileWriter {
 public:
  enum class SampleFormat { int16, float32 };

  /// Creates the file, or empties it. The rate is in Hz.
  AudioFileWriter(const std::filesystem::path& path, int sampleRate, SampleFormat format);

  /// Closes without a word; `close` tells of errors.
  ~AudioFileWriter();

  /// Appends frames of two channels of equal length. For 16 bits a value is taken times 32768, rounded to
  /// nearest and clamped to the 16-bit range; what isn't a number becomes 0. 32-bit floats stay as they are.
  void write(std::span<const float> left, std::span<const float> right);

  /// Completes the file. Once, and nothing may be written after it.
  void close();

 private:
  template <class Sample>
  void writeInterleaved(std::vector<Sample>& block, std::span<const float> left,
                        std::span<const float> right);

  std::unique_ptr<SoundStream> stream_;
  SampleFormat format_;
  std::vector<std::int16_t> shorts_;
  std::vector<float> floats_;
};

}  // namespace platform
