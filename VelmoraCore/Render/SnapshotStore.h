#pragma once

#include <memory>

#include "VelmoraCore/Instruments/ShortLock.h"
#include "VelmoraCore/Render/RenderSnapshot.h"

namespace velmora {

/// Hands the newest snapshot to the audio threads.
///
/// The snapshot before it is kept one publish longer: a block that took it is then never its last owner, so
/// that memory is freed on the publishing thread. Edits come at human speed, far below the rate of blocks.
class SnapshotStore {
 public:
  explicit SnapshotStore(std::shared_ptr<const RenderSnapshot> initial = RenderSnapshot::empty())
      : current_(std::move(initial)) {}

  /// Main thread; frees the snapshot before the last one here.
  void publish(std::shared_ptr<const RenderSnapshot> snapshot);

  /// [audio thread]
  std::shared_ptr<const RenderSnapshot> current() noexcept;

 private:
  ShortLock slots_;
  std::shared_ptr<const RenderSnapshot> current_;   // guarded by slots_
  std::shared_ptr<const RenderSnapshot> previous_;  // guarded by slots_
};

}  // namespace velmora
