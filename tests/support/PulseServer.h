#pragma once

#include <string>
#include <vector>

#include "tests/support/TemporaryFolder.h"

namespace velmora::testing {

/// A sound server of the test's own, which every client in this process finds as long as the object lives. It
/// has one sink, "studio", that plays to nowhere and that can be recorded.
class PulseServer {
 public:
  enum class Sound { on, off };

  /// With `Sound::off` there is only the place where the server will be.
  explicit PulseServer(Sound sound = Sound::on);
  ~PulseServer();
  PulseServer(const PulseServer&) = delete;
  PulseServer& operator=(const PulseServer&) = delete;

  /// Returns once clients can connect.
  void start();
  /// Ends the server without a word to its clients; returns once it has gone.
  void kill();
  /// Lets the server hang, or go on.
  void freeze() const;
  void thaw() const;

  void suspendSink() const { control("suspend-sink studio 1"); }
  void resumeSink() const { control("suspend-sink studio 0"); }
  /// Adds a sink above "studio" and makes it the default one.
  void addSink(const std::string& name, int rate) const;
  /// "studio" can be removed, too, and come again.
  void removeSink(const std::string& name) const;
  void addStudio() const;

  /// What "studio" plays now, as pairs of samples at 48000 Hz. Blocks for `seconds`.
  std::vector<float> record(double seconds) const;

 private:
  void control(const std::string& command) const;

  TemporaryFolder folder_;
  int pid_ = 0;
};

}  // namespace velmora::testing
