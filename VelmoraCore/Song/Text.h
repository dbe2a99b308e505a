#pragma once

#include <string_view>

namespace velmora {

/// The text without Unicode white space and line ends at both ends; a view into `text`.
std::string_view trimmed(std::string_view text);

}  // namespace velmora
