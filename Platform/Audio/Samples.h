#pragma once

namespace platform {

/// [audio thread] True if every sample is zero. Cheap when the first samples already sound.
bool isSilent(const float* samples, int frameCount) noexcept;

/// [audio thread] True if every sample is a number of a size that effects can work with: finite and below
/// 2^64.
bool isUsable(const float* samples, int frameCount) noexcept;

/// [audio thread] The largest absolute sample; 0 for no samples. All samples must be numbers.
float peak(const float* samples, int frameCount) noexcept;

}  // namespace platform
