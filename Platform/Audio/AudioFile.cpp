#include "Platform/Audio/AudioFile.h"

#include <algorithm>
#include <bit>
#include <mutex>
#include <sndfile.h>
#include <string>
#include <string_view>
#include <sys/mman.h>

#include "Platform/Audio/VectorClones.h"
#include "Platform/Files/FileDescriptor.h"

namespace platform {

/// An open file and libsndfile's view of it. The library reads and writes through us, so that the system's
/// own reason for a failure is kept and a full disk can't be overlooked.
struct SoundStream {
  std::filesystem::path path;
  FileDescriptor file;
  SF_INFO info{};
  SNDFILE* sound = nullptr;
  int failure = 0;  // the first error number of the system

  SoundStream(const std::filesystem::path& path, FileDescriptor file, int mode, SF_INFO info);
  ~SoundStream() { closeSound(); }
  SoundStream(const SoundStream&) = delete;
  SoundStream& operator=(const SoundStream&) = delete;

  std::int64_t byteCount() const;
  void closeSound();

  /// The error of the operation that just failed; the given words are libsndfile's.
  [[noreturn]] void fail(std::string_view words) const;
};

namespace {

SoundStream& streamOf(void* user) { return *static_cast<SoundStream*>(user); }

sf_count_t orFailure(SoundStream& stream, std::int64_t result) {
  if (result < 0 && stream.failure == 0) stream.failure = errno;
  return result;
}

sf_count_t byteCountOf(void* user) { return streamOf(user).byteCount(); }

sf_count_t seek(sf_count_t offset, int whence, void* user) {
  SoundStream& stream = streamOf(user);
  return ::lseek(stream.file.number(), offset, whence);
}

sf_count_t tell(void* user) { return seek(0, SEEK_CUR, user); }

/// Moves all bytes, through interruptions and short transfers; returns those that were moved.
template <class Transfer>
sf_count_t transferAll(SoundStream& stream, sf_count_t count, Transfer transfer) {
  sf_count_t total = 0;
  while (total < count) {
    const ssize_t moved = transfer(stream.file.number(), total, static_cast<std::size_t>(count - total));
    if (moved < 0 && errno == EINTR) continue;
    if (orFailure(stream, moved) <= 0) break;
    total += moved;
  }
  return total;
}

sf_count_t readBytes(void* bytes, sf_count_t count, void* user) {
  return transferAll(streamOf(user), count, [bytes](int file, sf_count_t offset, std::size_t size) {
    return ::read(file, static_cast<char*>(bytes) + offset, size);
  });
}

sf_count_t writeBytes(const void* bytes, sf_count_t count, void* user) {
  return transferAll(streamOf(user), count, [bytes](int file, sf_count_t offset, std::size_t size) {
    return ::write(file, static_cast<const char*>(bytes) + offset, size);
  });
}

SF_VIRTUAL_IO transfers{byteCountOf, seek, readBytes, writeBytes, tell};

FileDescriptor openForWriting(const std::filesystem::path& path) {
  FileDescriptor file(::open(path.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
  if (!file) throw FileError(path, errno);
  return file;
}

FileDescriptor fileInMemory(std::string_view bytes, const std::filesystem::path& name) {
  FileDescriptor file(::memfd_create("sound", MFD_CLOEXEC));
  while (file && !bytes.empty()) {
    const ssize_t written = ::write(file.number(), bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) throw FileError(name, errno);
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  if (!file || ::lseek(file.number(), 0, SEEK_SET) != 0) throw FileError(name, errno);
  return file;
}

SF_INFO waveInfo(int sampleRate, AudioFileWriter::SampleFormat format) {
  const bool isFloat = format == AudioFileWriter::SampleFormat::float32;
  SF_INFO info{};
  info.samplerate = sampleRate;
  info.channels = 2;
  info.format = SF_FORMAT_WAV | (isFloat ? SF_FORMAT_FLOAT : SF_FORMAT_PCM_16);
  return info;
}

/// Clamped by its bits, which grow with the magnitude, as comparisons of floats would keep the loop from
/// running in vectors. Adding and taking away 1.5 * 2^23 rounds a float of at most 22 bits to the nearest
/// whole one, ties to even; unlike the library's functions it compiles to plain lanes on every processor.
inline std::int16_t int16Sample(float value) {
  constexpr float rounder = 12582912.0F;
  constexpr auto one = std::bit_cast<std::int32_t>(1.0F);
  constexpr std::int32_t infinity = 0x7f800000;
  const auto bits = std::bit_cast<std::int32_t>(value);
  const std::int32_t magnitude = bits & 0x7fffffff, sign = bits ^ magnitude;
  const std::int32_t bounded = magnitude > infinity ? 0 : std::min(magnitude, one);
  const float clamped = std::bit_cast<float>(bounded | sign);
  const auto whole = static_cast<std::int32_t>((clamped * 32768.0F + rounder) - rounder);
  return static_cast<std::int16_t>(std::min(whole, 32767));
}

PLATFORM_VECTOR_CLONES
void interleave(const float* __restrict left, const float* __restrict right, std::size_t frameCount,
                std::int16_t* __restrict block) {
  for (std::size_t frame = 0; frame < frameCount; ++frame) {
    block[2 * frame] = int16Sample(left[frame]);
    block[2 * frame + 1] = int16Sample(right[frame]);
  }
}

void interleave(const float* left, const float* right, std::size_t frameCount, float* block) {
  for (std::size_t frame = 0; frame < frameCount; ++frame) {
    block[2 * frame] = left[frame];
    block[2 * frame + 1] = right[frame];
  }
}

sf_count_t writeFrames(SNDFILE* sound, const std::int16_t* frames, sf_count_t count) {
  return sf_writef_short(sound, frames, count);
}
sf_count_t writeFrames(SNDFILE* sound, const float* frames, sf_count_t count) {
  return sf_writef_float(sound, frames, count);
}

}  // namespace

SoundStream::SoundStream(const std::filesystem::path& itsPath, FileDescriptor itsFile, int mode,
                         SF_INFO itsInfo)
    : path(itsPath), file(std::move(itsFile)), info(itsInfo) {
  static std::mutex
      lock;  // the library keeps the reason of a failed opening in one place for the whole process
  const std::lock_guard guard(lock);
  sound = sf_open_virtual(&transfers, mode, &info, this);
  if (!sound) fail(sf_strerror(nullptr));
}

std::int64_t SoundStream::byteCount() const {
  struct stat status {};
  return ::fstat(file.number(), &status) == 0 ? status.st_size : -1;
}

void SoundStream::closeSound() {
  if (sound) sf_close(sound);
  sound = nullptr;
}

void SoundStream::fail(std::string_view words) const {
  if (failure != 0) throw FileError(path, failure);
  if (words.ends_with('.')) words.remove_suffix(1);
  throw FileError(path, words);
}

AudioFileReader::AudioFileReader(const std::filesystem::path& path)
    : stream_(std::make_unique<SoundStream>(path, openForReading(path), SFM_READ, SF_INFO{})) {}

AudioFileReader::AudioFileReader(std::string_view bytes, const std::filesystem::path& name)
    : stream_(std::make_unique<SoundStream>(name, fileInMemory(bytes, name), SFM_READ, SF_INFO{})) {}

AudioFileReader::~AudioFileReader() = default;

int AudioFileReader::sampleRate() const { return stream_->info.samplerate; }
int AudioFileReader::channelCount() const { return stream_->info.channels; }
std::int64_t AudioFileReader::frameCount() const { return stream_->info.frames; }
std::int64_t AudioFileReader::byteCount() const { return stream_->byteCount(); }

std::size_t AudioFileReader::read(std::span<float> interleaved) {
  const auto wanted = static_cast<sf_count_t>(interleaved.size()) / stream_->info.channels;
  const sf_count_t count = sf_readf_float(stream_->sound, interleaved.data(), wanted);
  if (stream_->failure != 0 || (count < wanted && sf_error(stream_->sound) != SF_ERR_NO_ERROR))
    stream_->fail(sf_strerror(stream_->sound));
  return static_cast<std::size_t>(count);
}

AudioFileWriter::AudioFileWriter(const std::filesystem::path& path, int sampleRate, SampleFormat format)
    : stream_(
          std::make_unique<SoundStream>(path, openForWriting(path), SFM_WRITE, waveInfo(sampleRate, format))),
      format_(format) {
  // The peak chunk holds the time of day: without it the same sound makes the same file.
  sf_command(stream_->sound, SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);
}

AudioFileWriter::~AudioFileWriter() = default;

void AudioFileWriter::write(std::span<const float> left, std::span<const float> right) {
  if (format_ == SampleFormat::int16) writeInterleaved(shorts_, left, right);
  if (format_ == SampleFormat::float32) writeInterleaved(floats_, left, right);
}

template <class Sample>
void AudioFileWriter::writeInterleaved(std::vector<Sample>& block, std::span<const float> left,
                                       std::span<const float> right) {
  const std::size_t frameCount = std::min(left.size(), right.size());
  block.resize(2 * frameCount);
  interleave(left.data(), right.data(), frameCount, block.data());
  const auto count = static_cast<sf_count_t>(frameCount);
  if (writeFrames(stream_->sound, block.data(), count) != count || stream_->failure != 0)
    stream_->fail(sf_strerror(stream_->sound));
}

void AudioFileWriter::close() {
  stream_->closeSound();
  const int closeFailure = stream_->file.close();
  if (stream_->failure == 0) stream_->failure = closeFailure;
  if (stream_->failure != 0) stream_->fail({});
}

}  // namespace platform
