#include "Platform/Audio/CAFWriter.h"

#include <bit>
#include <string>

namespace platform {
namespace {

static_assert(std::endian::native == std::endian::little, "the samples are written as they lie in memory");

constexpr std::int64_t unsizedBytes = 4;  // of the chunk of samples: the edit count before them
constexpr off_t sizeOffset = 56;          // of that chunk's size

/// The bytes of a number, highest first, as everything but the samples is written.
template <class Number>
std::string bigEndian(Number number) {
  std::string bytes;
  for (int shift = 8 * sizeof(Number) - 8; shift >= 0; shift -= 8)
    bytes += static_cast<char>(static_cast<std::uint64_t>(number) >> shift & 0xFF);
  return bytes;
}

std::string header(int sampleRate) {
  constexpr std::uint32_t isFloat = 1, isLittleEndian = 2;
  std::string bytes = "caff" + bigEndian(std::uint16_t{1}) + bigEndian(std::uint16_t{0});
  bytes += "desc" + bigEndian(std::int64_t{32});
  bytes += bigEndian(std::bit_cast<std::uint64_t>(static_cast<double>(sampleRate)));
  bytes += "lpcm" + bigEndian(isFloat | isLittleEndian);
  for (const std::uint32_t value : {4U, 1U, 1U, 32U})  // bytes a packet, frames a packet, channels, bits
    bytes += bigEndian(value);
  return bytes + "data" + bigEndian(unsizedBytes) + bigEndian(std::uint32_t{0});
}

/// Returns the bytes written: fewer than `count` after an error, which `errno` tells.
std::size_t writeAll(const FileDescriptor& file, const char* bytes, std::size_t count) {
  std::size_t total = 0;
  while (total < count) {
    const ssize_t written = ::write(file.number(), bytes + total, count - total);
    if (written < 0 && errno != EINTR) break;
    if (written > 0) total += static_cast<std::size_t>(written);
  }
  return total;
}

}  // namespace

CAFWriter::CAFWriter(const std::filesystem::path& path, int sampleRate)
    : path_(path), file_(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600)) {
  require(static_cast<bool>(file_));
  const std::string bytes = header(sampleRate);
  require(writeAll(file_, bytes.data(), bytes.size()) == bytes.size());
  flush();
  if (const int code = openFolder(folderOf(path)).sync()) throw FileError(path, code);
}

void CAFWriter::append(std::span<const float> samples) {
  const std::size_t written =
      writeAll(file_, reinterpret_cast<const char*>(samples.data()), samples.size_bytes());
  byteCount_ += static_cast<std::int64_t>(written);
  require(written == samples.size_bytes());
}

void CAFWriter::sync() {
  if (byteCount_ % sizeof(float) != 0) {  // a disk that filled up in the middle of a sample
    byteCount_ -= byteCount_ % static_cast<std::int64_t>(sizeof(float));
    require(::ftruncate(file_.number(), sizeOffset + 8 + unsizedBytes + byteCount_) == 0);
  }
  flush();
  writeSize();
  flush();
}

void CAFWriter::writeSize() {
  const std::string size = bigEndian(unsizedBytes + byteCount_);
  const auto count = static_cast<ssize_t>(size.size());
  require(::pwrite(file_.number(), size.data(), size.size(), sizeOffset) == count);
}

void CAFWriter::require(bool isDone) const {
  if (!isDone) throw FileError(path_, errno);
}

void CAFWriter::flush() const {
  if (const int code = file_.sync()) throw FileError(path_, code);
}

}  // namespace platform
