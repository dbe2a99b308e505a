#pragma once

namespace velmora {

/// From now on screen readers find the open menus of buttons, lists of combo boxes and popovers among the
/// application's windows. The standard interface leaves out what is a popup, though it names the application
/// as its parent, so that readers can neither look into it nor place what it tells.
void showPopupsToScreenReaders();

}  // namespace velmora
