#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace velmora::testing {

/// Watches one thread for what a real-time callback must not do: allocate, free, or take a lock.
///
/// The program that links this has malloc, free, operator new and delete and the calls on mutexes and
/// condition variables intercepted. Locks inside `permitted` objects are let pass. One guard at a time.
class RealtimeGuard {
 public:
  /// The memory of an object whose short locks the callback may take.
  struct Range {
    const void* start;
    std::size_t size;
  };
  template <class Object>
  static Range rangeOf(const Object& object) {
    return {&object, sizeof(object)};
  }

  /// Whether anything is intercepted in this build; sanitizers bring interceptors of their own.
  static bool isEffective();

  explicit RealtimeGuard(std::vector<Range> permitted = {});
  ~RealtimeGuard();
  RealtimeGuard(const RealtimeGuard&) = delete;
  RealtimeGuard& operator=(const RealtimeGuard&) = delete;

  /// What was done so far that must not be, as "malloc 3, lock 1"; empty if nothing.
  std::string faults() const;

 private:
  std::vector<Range> permitted_;
};

}  // namespace velmora::testing
