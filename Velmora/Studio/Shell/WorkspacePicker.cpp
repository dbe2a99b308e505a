#include "Velmora/Studio/Shell/WorkspacePicker.h"

#include "Velmora/Studio/Shell/WorkspaceEntry.h"

namespace velmora {

namespace {

QStringList entryTexts() {
  QStringList texts;
  for (const WorkspaceEntry& entry : workspaceEntries) texts << entry.text;
  return texts;
}

}  // namespace

WorkspacePicker::WorkspacePicker(AppModel& model, QWidget* parent)
    : SegmentedPicker("Workspace", entryTexts(), parent),
      model_(model),
      listener_([this] { refresh(); }, model.workspace) {
  onSelect = [this](int index) {
    model_.setWorkspace(workspaceEntries[static_cast<std::size_t>(index)].workspace);
  };
  refresh();
}

void WorkspacePicker::refresh() { setSelected(static_cast<int>(model_.workspace())); }

}  // namespace velmora
