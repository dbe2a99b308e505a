#include "Platform/Audio/FlowWatch.h"

#include <algorithm>
#include <utility>

namespace platform {

void FlowWatch::restart(std::uint64_t callbackCount) {
  *this = FlowWatch();
  callbackCount_ = callbackCount;
}

void FlowWatch::look(std::uint64_t callbackCount, Duration elapsed) {
  quiet_ += std::min(elapsed, longestLook);
  if (quiet_ >= stallAfter) {
    isCalled_ = false;
    flow_ = {};
  }
  if (std::exchange(callbackCount_, callbackCount) == callbackCount) return;
  if (std::exchange(isCalled_, true)) flow_ += quiet_;
  quiet_ = {};
  hasFlowed_ |= isFlowing();
}

}  // namespace platform
