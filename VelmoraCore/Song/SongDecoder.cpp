#include <algorithm>
#include <bit>
#include <cctype>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <vector>

#include "VelmoraCore/Song/SongJSON.h"
#include "VelmoraCore/Song/SongShape.h"

namespace velmora {
namespace {

using shape::Presence;
using shape::Shape;
using shape::Slot;

// A bit beside those of the slots: a tagged value has a key that isn't one of its cases.
constexpr std::uint32_t unknownKey = 1U << 31;

// The whole document, as the one element of a list above it.
constexpr std::array documentSlots{Slot{.name = "the song",
                                        .wanted = "an object",
                                        .content = &shape::ShapeOf<Song>::shape,
                                        .enter = [](void* owner) { return owner; }}};
constexpr Shape documentShape{Shape::Kind::array, documentSlots};

std::string quoted(std::string_view key) { return '"' + std::string(key) + '"'; }

[[noreturn]] void fail(std::string sentence) {
  sentence.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(sentence.front())));
  throw DecodingError(sentence);
}

/// "(line 3, column 7)" of the byte that is `offset` bytes after the start.
std::string lineAndColumn(std::string_view text, std::size_t offset) {
  const std::string_view before = text.substr(0, offset);
  const auto line = std::count(before.begin(), before.end(), '\n') + 1;
  const std::size_t column = before.size() - (before.rfind('\n') + 1) + 1;
  return "(line " + std::to_string(line) + ", column " + std::to_string(column) + ")";
}

/// Fills a song while the parser walks through the text. Objects and arrays that are being filled lie on a
/// stack no deeper than the tables; whatever lies under an unknown key is skipped by counting brackets.
class SongReader final : public nlohmann::json_sax<nlohmann::json> {
 public:
  SongReader(Song& song, std::string_view text) : text_(text) {
    frames_.push_back({&documentShape, &song, &documentSlots.front()});
  }

  bool null() override { return scalar(nullptr); }
  bool boolean(bool value) override { return scalar(value); }
  bool number_integer(std::int64_t value) override { return scalar(value); }
  bool number_unsigned(std::uint64_t value) override { return scalar(value); }
  bool number_float(double value, const std::string& digits) override {
    return scalar(Decimal{value, digits});
  }
  bool string(std::string& value) override { return scalar(std::string_view(value)); }
  bool binary(nlohmann::json::binary_t&) override { return false; }
  bool start_object(std::size_t) override { return open(false); }
  bool end_object() override { return close(); }
  bool start_array(std::size_t) override { return open(true); }
  bool end_array() override { return close(); }

  bool key(std::string& key) override {
    if (skippedDepth_ > 0) return true;
    Frame& frame = frames_.back();
    const auto slots = frame.shape->slots;
    const auto found =
        std::find_if(slots.begin(), slots.end(), [&](const Slot& slot) { return slot.name == key; });
    frame.slot = found == slots.end() ? nullptr : &*found;
    frame.seen |= found == slots.end() ? unknownKey : bitOf(frame, *found);
    return true;
  }

  bool parse_error(std::size_t bytesRead, const std::string&,
                   const nlohmann::json::exception& error) override {
    constexpr int numberOverflow = 406;
    const std::string place = lineAndColumn(text_, bytesRead > 0 ? bytesRead - 1 : 0);
    if (error.id == numberOverflow) fail("a number in the document is too large " + place + ".");
    fail("the document isn't valid JSON " + place + ".");
  }

 private:
  /// An object or array that is being filled.
  struct Frame {
    const Shape* shape;
    void* owner;
    const Slot* slot;        // where the next value goes; null where it is ignored
    std::uint32_t seen = 0;  // a bit for each slot that has a value
    std::size_t count = 0;   // of an array: the elements that were begun
  };

  static std::uint32_t bitOf(const Frame& frame, const Slot& slot) {
    return 1U << (&slot - frame.shape->slots.data());
  }

  bool scalar(const Scalar& scalar) {
    Frame& frame = frames_.back();
    if (skippedDepth_ > 0 || !frame.slot) return true;
    ++frame.count;
    const Slot& slot = *frame.slot;
    if (slot.presence != Presence::required && std::holds_alternative<std::nullptr_t>(scalar)) {
      frame.seen &= ~bitOf(frame, slot);
    } else if (!slot.assign || !slot.assign(frame.owner, scalar)) {
      failUnfit();
    }
    return true;
  }

  bool open(bool isArray) {
    Frame& frame = frames_.back();
    if (skippedDepth_ > 0 || !frame.slot) {
      ++skippedDepth_;
      return true;
    }
    ++frame.count;
    const Shape* content = frame.slot->content;
    if (!content || content->isArray() != isArray) failUnfit();
    void* owner = frame.slot->enter(frame.owner);
    frames_.push_back({content, owner, isArray ? &content->slots.front() : nullptr});
    return true;
  }

  bool close() {
    if (skippedDepth_ > 0) {
      --skippedDepth_;
      return true;
    }
    const Frame& frame = frames_.back();
    if (frame.shape->kind == Shape::Kind::record) finishRecord(frame);
    if (frame.shape->kind == Shape::Kind::tagged) finishTagged(frame);
    frames_.pop_back();
    return true;
  }

  void finishRecord(const Frame& frame) const {
    for (const Slot& slot : frame.shape->slots) {
      if (frame.seen & bitOf(frame, slot)) continue;
      if (slot.presence == Presence::required) {
        fail(quoted(slot.name) + " is missing in " + valueName(frames_.size() - 2) + ".");
      }
      slot.leaveOut(frame.owner);
    }
  }

  void finishTagged(const Frame& frame) const {
    if (std::popcount(frame.seen) == 1 && frame.seen != unknownKey) return;
    fail(valueName(frames_.size() - 2) + (frame.seen == unknownKey
                                              ? " holds an unknown case."
                                              : ": Invalid number of keys found, expected one."));
  }

  [[noreturn]] void failUnfit() const {
    fail(valueName(frames_.size() - 1) + " must be " + std::string(frames_.back().slot->wanted) + ".");
  }

  /// The name of the value that is in the current slot of a frame, from the inside out: `"fx" of track 3`.
  std::string valueName(std::size_t frameIndex) const {
    std::string name;
    for (std::size_t index = frameIndex + 1; index-- > 0;) {
      const Frame& frame = frames_[index];
      const bool isNamedByElement = index < frameIndex && frames_[index + 1].shape->isArray();
      if (isNamedByElement || (index == 0 && frameIndex > 1)) continue;
      if (!name.empty()) name += name.ends_with('"') ? " in " : " of ";
      name += frame.shape->isArray() ? std::string(frame.slot->name) : quoted(frame.slot->name);
      if (frame.shape->isArray() && index > 0) name += " " + std::to_string(frame.count);
    }
    return name;
  }

  std::string_view text_;
  std::vector<Frame> frames_;
  std::size_t skippedDepth_ = 0;
};

}  // namespace

Song decodeSong(std::string_view text) {
  // The parser would take a NUL for the end of the text.
  if (const auto nul = text.find('\0'); nul != std::string_view::npos) {
    fail("the document isn't valid JSON " + lineAndColumn(text, nul) + ".");
  }
  Song song;
  SongReader reader(song, text);
  nlohmann::json::sax_parse(text.begin(), text.end(), &reader);
  return song;
}

}  // namespace velmora
