#pragma once

#include <cmath>
#include <mutex>
#include <utility>
#include <vector>

#include "Platform/Audio/OutputDevice.h"

namespace velmora::testing {

/// An output whose blocks are pulled by hand, and which can be lost and come back.
class HandDrivenOutput final : public platform::OutputDevice {
 public:
  struct Block {
    std::vector<float> left, right;
    bool operator==(const Block&) const = default;
    Block& operator+=(const Block& next) {
      left.insert(left.end(), next.left.begin(), next.left.end());
      right.insert(right.end(), next.right.begin(), next.right.end());
      return *this;
    }
    float peak() const {
      float peak = 0;
      for (const float sample : left) peak = std::max(peak, std::abs(sample));
      for (const float sample : right) peak = std::max(peak, std::abs(sample));
      return peak;
    }
  };

  explicit HandDrivenOutput(double rate = 48000) : rate_(rate) {}

  double sampleRate() override { return isThere_ ? rate_ : 0; }

  void start(platform::OutputSource& source) override {
    if (!isThere_) throw platform::DeviceError("No sound output was found.");
    const std::lock_guard guard(playing_);
    source_ = &source;
    sampleTime_ = 0;
  }
  void stop() noexcept override {
    const std::lock_guard guard(playing_);
    source_ = nullptr;
  }

  bool isPlaying() const { return source_ != nullptr; }

  /// The next frames; silence while nothing plays. Any thread.
  Block pull(int frameCount) {
    const std::lock_guard guard(playing_);
    const auto count = static_cast<std::size_t>(frameCount);
    Block block{std::vector<float>(count), std::vector<float>(count)};
    if (source_) source_->render(sampleTime_, frameCount, block.left.data(), block.right.data());
    sampleTime_ += frameCount;
    return block;
  }

  /// Takes the device away without a word: the next start fails.
  void remove() { isThere_ = false; }
  void lose() {
    stop();
    isThere_ = false;
    tellChange();
  }
  void comeBack(double rate) {
    stop();
    isThere_ = true;
    rate_ = rate;
    tellChange();
  }

 private:
  std::mutex playing_;
  double rate_;
  bool isThere_ = true;
  platform::OutputSource* source_ = nullptr;
  double sampleTime_ = 0;
};

}  // namespace velmora::testing
