#pragma once

#include <string>

namespace velmora::testing {

/// A file call that goes wrong: the calls of this process that open, write, sync, rename, remove or close are
/// counted from the moment that the fault is armed, and the one of the given number fails.
struct Fault {
  enum class Kind { once, fromThenOn, kill };

  Kind kind = Kind::once;
  int error = 0;   ///< what `errno` becomes
  int number = 0;  ///< of the call, from 1
};

/// For a forked child: it stays armed to its end.
void arm(const Fault& fault);

/// Lets the sizes of files by path be told as 0, as some file systems do, or truly again.
void hideSizes(bool areHidden);

/// The name of the first call that failed; empty if none did.
std::string failedCall();

}  // namespace velmora::testing
