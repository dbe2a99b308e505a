#include "Platform/Audio/RecordingWriter.h"

#include <array>
#include <utility>

#include "Platform/Files/FileError.h"

namespace platform {

RecordingWriter::RecordingWriter(const std::filesystem::path& path, int sampleRate,
                                 std::shared_ptr<InputFeed> feed)
    : file_(path, sampleRate), feed_(std::move(feed)), thread_([this] { run(); }) {}

void RecordingWriter::end() {
  {
    const std::lock_guard lock(mutex_);
    isEnding_ = true;
  }
  changed_.notify_all();
  if (thread_.joinable()) thread_.join();
}

void RecordingWriter::run() noexcept {
  try {
    while (!awaitEnd()) write();
    write();
  } catch (const FileError&) {
    hasFailed_ = true;
  }
}

/// What a full disk still took is worth keeping.
void RecordingWriter::write() {
  try {
    std::array<float, 4096> block{};
    while (const std::size_t count = feed_->read(block)) file_.append({block.data(), count});
  } catch (const FileError&) {
    file_.sync();
    throw;
  }
  file_.sync();
}

bool RecordingWriter::awaitEnd() {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, syncDistance, [this] { return isEnding_; });
}

}  // namespace platform
