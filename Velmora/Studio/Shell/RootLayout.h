#pragma once

#include <QSize>

namespace velmora {

/// What stands around the workspace, by the size of the window's content: narrow windows change the workspace
/// with tabs at the foot, low ones with a picker in the header, the others above the workspace.
struct RootLayout {
  static constexpr QSize minimumSize{540, 480};
  static constexpr int regularWidth = 700;   ///< narrower is compact
  static constexpr int regularHeight = 500;  ///< lower is compact

  explicit constexpr RootLayout(QSize content)
      : isCompact(content.width() < regularWidth),
        showsPickerInHeader(!isCompact && content.height() < regularHeight),
        showsPickerInWorkspace(content.height() >= regularHeight),
        showsTabs(isCompact) {}

  bool isCompact;               ///< of the transport bar
  bool showsPickerInHeader;     ///< the header's `showsWorkspacePicker`
  bool showsPickerInWorkspace;  ///< the workspace's `showsWorkspacePicker`; it also has to be wide enough
  bool showsTabs;
};

}  // namespace velmora
