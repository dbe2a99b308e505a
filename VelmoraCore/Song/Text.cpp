#include "VelmoraCore/Song/Text.h"

#include <algorithm>
#include <array>

namespace velmora {
namespace {

// The control characters that end lines or move the caret, and the categories Zs, Zl and Zp, in UTF-8.
constexpr std::array<std::string_view, 25> whiteSpace{
    "\t",           "\n",           "\v",           "\f",           "\r",           " ",
    "\xC2\x85",     "\xC2\xA0",     "\xE1\x9A\x80", "\xE2\x80\x80", "\xE2\x80\x81", "\xE2\x80\x82",
    "\xE2\x80\x83", "\xE2\x80\x84", "\xE2\x80\x85", "\xE2\x80\x86", "\xE2\x80\x87", "\xE2\x80\x88",
    "\xE2\x80\x89", "\xE2\x80\x8A", "\xE2\x80\xA8", "\xE2\x80\xA9", "\xE2\x80\xAF", "\xE2\x81\x9F",
    "\xE3\x80\x80",
};

template <class Matches>
std::size_t blankLength(Matches matches) {
  const auto found = std::find_if(whiteSpace.begin(), whiteSpace.end(), matches);
  return found == whiteSpace.end() ? 0 : found->size();
}

}  // namespace

std::string_view trimmed(std::string_view text) {
  while (const auto length = blankLength([&](auto blank) { return text.starts_with(blank); })) {
    text.remove_prefix(length);
  }
  while (const auto length = blankLength([&](auto blank) { return text.ends_with(blank); })) {
    text.remove_suffix(length);
  }
  return text;
}

}  // namespace velmora
