#pragma once

#include <QPainterPath>
#include <string_view>

namespace velmora {

/// The transport's symbols as plain shapes in the box of `Symbols`, for a desktop without the icon font;
/// empty for any other name.
QPainterPath symbolShape(std::u16string_view name);

}  // namespace velmora
