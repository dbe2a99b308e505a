#pragma once

#include <array>
#include <cstdint>

namespace velmora {

/// The tabs of the studio, in their order.
enum class Workspace : std::uint8_t { arrangement, pattern, mixer };

inline constexpr std::array workspaces{Workspace::arrangement, Workspace::pattern, Workspace::mixer};

constexpr const char* title(Workspace workspace) {
  constexpr std::array titles{"Arrange", "Pattern", "Mixer"};
  return titles[static_cast<std::size_t>(workspace)];
}

}  // namespace velmora
