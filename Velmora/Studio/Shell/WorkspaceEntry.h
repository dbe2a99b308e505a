#pragma once

#include <array>

#include "Velmora/Model/Workspace.h"

namespace velmora {

/// How tabs and pickers show a workspace.
struct WorkspaceEntry {
  Workspace workspace;
  const char* id;
  const char* text;
  const char* symbol;
};

inline constexpr std::array workspaceEntries{
    WorkspaceEntry{Workspace::arrangement, "arrangement", "Arrange", "rectangle.split.3x1"},
    WorkspaceEntry{Workspace::pattern, "pattern", "Editor", "pianokeys"},
    WorkspaceEntry{Workspace::mixer, "mixer", "Mixer", "slider.horizontal.3"},
};

constexpr const WorkspaceEntry& entryOf(Workspace workspace) {
  return workspaceEntries[static_cast<std::size_t>(workspace)];
}

}  // namespace velmora
