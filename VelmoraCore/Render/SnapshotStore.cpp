#include "VelmoraCore/Render/SnapshotStore.h"

#include <mutex>
#include <utility>

namespace velmora {

void SnapshotStore::publish(std::shared_ptr<const RenderSnapshot> snapshot) {
  {
    const std::lock_guard guard(slots_);
    std::swap(previous_, current_);
    std::swap(current_, snapshot);
  }
  // `snapshot` now holds what was displaced and frees it outside the lock.
}

std::shared_ptr<const RenderSnapshot> SnapshotStore::current() noexcept {
  const std::lock_guard guard(slots_);
  return current_;
}

}  // namespace velmora
