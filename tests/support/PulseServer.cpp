#include "tests/support/PulseServer.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <poll.h>
#include <stdexcept>
#include <sys/syscall.h>
#include <unistd.h>

#include "Platform/Files/FileDescriptor.h"

namespace velmora::testing {
namespace {

void run(const std::string& command) {
  if (std::system(command.c_str()) != 0) throw std::runtime_error("failed: " + command);
}

/// Rewinding is off as it lets the sink play two seconds ahead while nobody is connected.
constexpr char sinkModule[] = "module-null-sink sink_name=studio rate=48000 norewinds=1";

}  // namespace

PulseServer::PulseServer(Sound sound) {
  const std::string folder = folder_.path();
  ::setenv("XDG_RUNTIME_DIR", folder.c_str(), 1);
  ::setenv("PULSE_SERVER", ("unix:" + folder + "/pulse/native").c_str(), 1);
  if (sound == Sound::on) start();
}

PulseServer::~PulseServer() {
  if (pid_) kill();
}

/// The daemon's parent returns when the modules stand. Left behind by a test that dies, it ends by itself.
void PulseServer::start() {
  run("pulseaudio -n --daemonize --exit-idle-time=30 --log-level=error -L '" + std::string(sinkModule) +
      "' -L 'module-native-protocol-unix auth-anonymous=1 auth-cookie-enabled=0' 2>/dev/null");
  std::ifstream(folder_ / "pulse/pid") >> pid_;
}

void PulseServer::kill() {
  const platform::FileDescriptor process(static_cast<int>(::syscall(SYS_pidfd_open, pid_, 0)));
  ::kill(pid_, SIGKILL);
  pollfd ended{process.number(), POLLIN, 0};
  ::poll(&ended, 1, 5000);
  std::filesystem::remove(folder_ / "pulse/pid");  // or else the next one takes the dead one for alive
  pid_ = 0;
}

void PulseServer::freeze() const { ::kill(pid_, SIGSTOP); }
void PulseServer::thaw() const { ::kill(pid_, SIGCONT); }

/// A sink of its own would take the rate of the first stream that comes to it.
void PulseServer::addSink(const std::string& name, int rate) const {
  control("load-module module-remap-sink master=studio sink_name=" + name + " rate=" + std::to_string(rate));
  control("set-default-sink " + name);
}

void PulseServer::addStudio() const { control(std::string("load-module ") + sinkModule); }

void PulseServer::removeSink(const std::string& name) const {
  control("unload-module $(pactl list short modules | grep sink_name=" + name + " | cut -f 1)");
}

std::vector<float> PulseServer::record(double seconds) const {
  std::vector<float> samples(static_cast<std::size_t>(seconds * 48000) * 2);
  const std::string command =
      "exec parec -d studio.monitor --format=float32le --rate=48000 --channels=2 --raw --latency-msec=20 "
      "2>/dev/null";
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(::popen(command.c_str(), "r"), ::pclose);
  samples.resize(std::fread(samples.data(), sizeof(float), samples.size(), pipe.get()));
  return samples;
}

void PulseServer::control(const std::string& command) const { run("pactl " + command + " >/dev/null"); }

}  // namespace velmora::testing
