#include "Platform/Audio/CubebInput.h"

#include <cmath>
#include <cstdio>
#include <utility>

#include "Platform/Audio/OutputDevice.h"

namespace platform {
namespace {

constexpr std::size_t ringFrames = 1 << 20;  // 23 s, for a disk that is busy
constexpr std::chrono::milliseconds longestFirstCall{300};

/// On the control thread: it takes a device a moment until the first frames come.
void awaitFirstCall(const InputFeed& feed) {
  const auto deadline = std::chrono::steady_clock::now() + longestFirstCall;
  while (feed.callbackCount() == 0 && std::chrono::steady_clock::now() < deadline)
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

}  // namespace

CubebInput::CubebInput() {
  timer_.setInterval(beatLength);
  QObject::connect(&timer_, &QTimer::timeout, [this] { beat(); });
}

CubebInput::~CubebInput() { stop(); }

/// The file comes last, so that a failed start leaves none.
void CubebInput::start(const std::filesystem::path& file, double longestSeconds) {
  stop();
  feed_ = std::make_shared<InputFeed>(std::llround(longestSeconds * sampleRate), ringFrames);
  stream_ = open();
  try {
    writer_ = std::make_unique<RecordingWriter>(file, sampleRate, feed_);
  } catch (...) {
    stop();
    throw;
  }
  feed_->begin();
  flow_.restart(feed_->callbackCount());
  lastBeat_ = Clock::now();
  nextLook_ = lastBeat_ + lookDistance;
  timer_.start();
}

/// What a server that hangs may still open is closed by a job that follows.
std::unique_ptr<CubebStream> CubebInput::open() {
  auto opening = thread_.run([feed = feed_] {
    auto stream = CubebStream::openInput(feed, sampleRate);
    if (stream) awaitFirstCall(*feed);
    return stream;
  });
  if (opening.wait_for(patience) != std::future_status::ready) {
    thread_.run([opening = std::move(opening)]() mutable { opening.get(); });
    throw DeviceError("The sound server does not answer.");
  }
  auto stream = opening.get();
  if (!stream) throw DeviceError("No sound input was found.");
  return stream;
}

bool CubebInput::stop() {
  timer_.stop();
  looking_ = {};
  if (stream_) thread_.run([stream = std::move(stream_)]() mutable { stream.reset(); });
  if (!writer_) return true;
  feed_->end();
  writer_->end();
  const bool isWhole = !writer_->hasFailed();
  writer_.reset();
  if (const auto lost = static_cast<double>(lostFrames()); lost > 0)
    std::fprintf(stderr, "The recording lacks %.0f ms, which were lost on the way.\n",
                 std::ceil(1000 * lost / sampleRate));
  return isWhole;
}

double CubebInput::currentTime() const {
  return feed_ ? static_cast<double>(feed_->frameCount()) / sampleRate : 0;
}

void CubebInput::beat() {
  const auto now = Clock::now();
  flow_.look(feed_->callbackCount(), now - lastBeat_);
  lastBeat_ = now;
  if (feed_->isFull()) return finish(true);
  if (isBroken(now)) finish(false);
}

bool CubebInput::isBroken(Clock::time_point now) {
  return stream_->hasFailed() || flow_.isStalled() || writer_->hasFailed() || isOnAnotherDevice(now);
}

bool CubebInput::isOnAnotherDevice(Clock::time_point now) {
  if (isReady(looking_)) return looking_.get();
  if (looking_.valid() || (now < nextLook_ && !stream_->haveDevicesChanged())) return false;
  nextLook_ = now + lookDistance;
  looking_ = thread_.run([stream = stream_.get()] { return stream->hasMoved(); });
  return false;
}

void CubebInput::finish(bool isClean) {
  const bool isWhole = stop();
  tellFinished(isClean && isWhole);
}

}  // namespace platform
