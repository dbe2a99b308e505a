#pragma once

#include <filesystem>
#include <functional>

#include "Platform/Audio/AudioFile.h"
#include "Platform/Audio/InputRecorder.h"
#include "Platform/Audio/OutputDevice.h"

namespace velmora::testing {

/// A microphone whose takes are written by hand.
class HandFedInput final : public platform::InputRecorder {
 public:
  void start(const std::filesystem::path& path, double) override {
    if (onStart) onStart();
    file = path;
  }
  bool stop() override {
    ++stops;
    return isWhole;
  }
  double currentTime() const override { return 0; }

  void end(bool isClean) const { tellFinished(isClean); }

  std::function<void()> onStart;  ///< may throw
  std::filesystem::path file;     ///< of the last take
  int stops = 0;
  bool isWhole = true;  ///< what a stop answers
};

}  // namespace velmora::testing
