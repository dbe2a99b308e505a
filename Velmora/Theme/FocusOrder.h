#pragma once

class QWidget;

namespace velmora {

/// Has the tabulator go through what `root` shows by its place: row after row downwards, in a row from the
/// left, a part before what it holds. Called ahead of each step, it needs no care from whoever makes or moves
/// parts later.
void orderFocusByPlace(QWidget& root);

}  // namespace velmora
