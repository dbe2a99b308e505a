#pragma once

#include <chrono>
#include <cstdint>

namespace platform {

/// Watches over the audio callbacks of a stream: a suspended or hung device says nothing, its callbacks just
/// stop. Told from time to time how many there were, it says whether sound flows.
///
/// Time is what passes between two looks, each counted as `longestLook` at most: a program that was itself
/// held up doesn't mistake that for silence.
class FlowWatch {
 public:
  using Duration = std::chrono::steady_clock::duration;
  static constexpr Duration longestLook = std::chrono::milliseconds(100);
  static constexpr Duration stallAfter = std::chrono::milliseconds(250);
  /// A device that slept gets longer to wake up.
  static constexpr Duration stallAtFirst = std::chrono::seconds(3);
  /// Longer than any first filling of the server's buffer, which a suspended device asks for, too.
  static constexpr Duration flowAfter = std::chrono::milliseconds(100);

  /// A new stream, which starts from this count.
  void restart(std::uint64_t callbackCount);
  void look(std::uint64_t callbackCount, Duration elapsed);

  /// How long no callback came.
  Duration quiet() const { return quiet_; }
  bool isFlowing() const { return flow_ >= flowAfter; }
  bool isStalled() const { return quiet_ >= (hasFlowed_ ? stallAfter : stallAtFirst); }

 private:
  std::uint64_t callbackCount_ = 0;
  Duration quiet_{};
  Duration flow_{};  // for how long callbacks have come without a stall
  bool isCalled_ = false;
  bool hasFlowed_ = false;
};

}  // namespace platform
