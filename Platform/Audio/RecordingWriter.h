#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <memory>
#include <mutex>
#include <thread>

#include "Platform/Audio/CAFWriter.h"
#include "Platform/Audio/InputFeed.h"

namespace platform {

/// A thread that brings what an `InputFeed` has taken up to a file, and to the disk every `syncDistance`.
class RecordingWriter {
 public:
  static constexpr std::chrono::milliseconds syncDistance{250};

  /// Creates the file. Throws `FileError`.
  RecordingWriter(const std::filesystem::path& path, int sampleRate, std::shared_ptr<InputFeed> feed);
  ~RecordingWriter() { end(); }
  RecordingWriter(const RecordingWriter&) = delete;
  RecordingWriter& operator=(const RecordingWriter&) = delete;

  /// Writes what is still there, and then no more.
  void end();

  /// Any thread. The disk is full or broken; the file is whole up to there and grows no more.
  bool hasFailed() const noexcept { return hasFailed_.load(std::memory_order_relaxed); }

 private:
  void run() noexcept;
  void write();
  bool awaitEnd();

  CAFWriter file_;
  std::shared_ptr<InputFeed> feed_;
  std::atomic<bool> hasFailed_{false};
  bool isEnding_ = false;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::thread thread_;
};

}  // namespace platform
