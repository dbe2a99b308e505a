#include "Platform/Audio/OutputFeed.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace platform {

void OutputFeed::play(OutputSource& source) noexcept {
  silence();
  frames_ = 0;
  lateness_.restart();
  source_.store(&source);
}

/// A block that starts after the source was taken away sees that, since both sides order their two accesses
/// sequentially: only a block that is in flight now can still use it.
void OutputFeed::silence() noexcept {
  source_.store(nullptr);
  const unsigned edges = blockEdges_.load();
  while (edges % 2 == 1 && blockEdges_.load() == edges)
    std::this_thread::sleep_for(std::chrono::microseconds(50));
}

void OutputFeed::fill(float* interleaved, int frameCount, double sampleRate) noexcept {
  blockEdges_.fetch_add(1);
  callbackCount_.fetch_add(1, std::memory_order_relaxed);
  if (OutputSource* const source = source_.load()) {
    lateness_.note(std::chrono::steady_clock::now(), frameCount, sampleRate);
    for (int rest = frameCount; rest > 0; rest -= pieceFrames)
      interleaved = renderPiece(*source, interleaved, std::min(rest, pieceFrames));
  } else {
    std::fill_n(interleaved, 2 * frameCount, 0.0F);
  }
  blockEdges_.fetch_add(1);
}

float* OutputFeed::renderPiece(OutputSource& source, float* interleaved, int frameCount) noexcept {
  source.render(static_cast<double>(frames_), frameCount, left_.data(), right_.data());
  frames_ += frameCount;
  for (std::size_t i = 0; i < static_cast<std::size_t>(frameCount); ++i) {
    *interleaved++ = left_[i];
    *interleaved++ = right_[i];
  }
  return interleaved;
}

}  // namespace platform
