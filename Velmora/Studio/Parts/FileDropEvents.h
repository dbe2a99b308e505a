#pragma once

#include <QDropEvent>
#include <filesystem>
#include <optional>

#include "Velmora/Model/AppModel.h"

namespace velmora {

/// The one file of this machine that is dragged; empty for anything else, and while the model can't import.
std::optional<std::filesystem::path> importableFile(const AppModel& model, const QDropEvent& event);

/// Takes the drag or drop as a copy.
void acceptAsCopy(QDropEvent& event);

}  // namespace velmora
