#pragma once

#include "Platform/Audio/GlidingParameter.h"

namespace platform {

/// The channel strip: volume and pan of a stereo signal. The pan is a balance: the side towards which it
/// points stays at unity, the other falls as cos(|pan| * pi / 2). Volumes above 1 amplify. The gains of both
/// sides glide.
class MixerNode {
 public:
  MixerNode() noexcept { prepare(48000); }

  /// Not while the audio thread runs.
  void prepare(double sampleRate) noexcept;
  void reset() noexcept;

  /// One thread at a time. A volume below 0 counts as 0.
  void setOutputVolume(float volume) noexcept;
  /// One thread at a time. Clamped to -1 (left)...1 (right).
  void setPan(float pan) noexcept;
  float outputVolume() const noexcept { return volume_; }
  float pan() const noexcept { return pan_; }

  /// [audio thread] In place.
  void process(float* left, float* right, int frameCount) noexcept;
  /// [audio thread] The same as processing silence.
  void skip(int frameCount) noexcept;

 private:
  void updateGains() noexcept;

  float volume_ = 1;
  float pan_ = 0;
  GlidingParameter leftGain_{1};
  GlidingParameter rightGain_{1};
};

}  // namespace platform
