#pragma once

namespace platform {

/// [audio thread] True if every sample is zero. Cheap when the first samples already sound.
bool isSilent(const float* samples, int frameCount) noexcept;

/// [audio thread] The largest absolute sample; 0 for no samples, not a number if one of them is none.
float peak(const float* samples, int frameCount) noexcept;

}  // namespace platform
