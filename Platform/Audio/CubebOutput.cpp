#include "Platform/Audio/CubebOutput.h"

#include <utility>

namespace platform {

CubebOutput::CubebOutput() {
  timer_.setInterval(beatLength);
  QObject::connect(&timer_, &QTimer::timeout, [this] { beat(); });
}

CubebOutput::~CubebOutput() { stop(); }

double CubebOutput::sampleRate() {
  if (phase_ == Phase::resting && !hasOutput()) awaitOpened();
  toldRate_ = phase_ != Phase::searching && hasOutput() ? stream_->sampleRate() : 0;
  return *toldRate_;
}

/// An output that turned up since `sampleRate` told of none, or of another rate, is left to the search, which
/// tells of it as a change.
void CubebOutput::start(OutputSource& source) {
  if (!toldRate_) sampleRate();
  if (phase_ == Phase::searching || !hasOutput() || stream_->sampleRate() != *toldRate_) {
    const bool isUnanswered = phase_ == Phase::resting && opening_.valid();
    search();
    throw DeviceError(isUnanswered ? "The sound server does not answer." : "No sound output was found.");
  }
  feed_->play(source);
  nextLook_ = Clock::now() + lookDistance;
  phase_ = Phase::playing;
}

/// What is still being opened is taken over by a job that follows and closes it.
void CubebOutput::stop() noexcept {
  timer_.stop();
  feed_->silence();
  phase_ = Phase::resting;
  toldRate_.reset();
  close();
  if (opening_.valid()) thread_.run([opening = std::move(opening_)]() mutable { opening.get(); });
}

void CubebOutput::beat() {
  const auto now = Clock::now();
  takeOpened();
  if (stream_) flow_.look(feed_->callbackCount(), now - lastBeat_);
  lastBeat_ = now;
  switch (phase_) {
    case Phase::resting:
      return rest();
    case Phase::playing:
      return watch(now);
    case Phase::searching:
      return seek(now);
  }
}

/// Nobody plays, so nobody is told: whoever asks for the rate next gets a new stream.
void CubebOutput::rest() {
  if (!hasOutput() || flow_.isStalled()) close();
  if (!stream_ && !opening_.valid()) timer_.stop();
}

void CubebOutput::watch(Clock::time_point now) {
  if (stream_->hasFailed()) return lose(Loss::gone);
  if (flow_.isStalled()) return lose(Loss::stalled);
  if (isReady(looking_)) return heedDevice(looking_.get());
  if (looking_.valid() || (now < nextLook_ && !stream_->haveDevicesChanged())) return;
  nextLook_ = now + lookDistance;
  looking_ = thread_.run([stream = stream_.get()] { return stream->preferredRate(); });
}

void CubebOutput::heedDevice(double preferredRate) {
  if (preferredRate == 0) return lose(Loss::gone);
  if (preferredRate != stream_->sampleRate()) changeRate();
}

void CubebOutput::seek(Clock::time_point now) {
  if (stream_ && stream_->hasFailed()) {
    close();
    mustFlow_ = false;
  }
  if (stream_ && (flow_.isFlowing() || !mustFlow_)) {
    phase_ = Phase::resting;
    toldRate_.reset();
    return tellChange();
  }
  if (stream_ && flow_.quiet() >= longestStall) close();
  if (stream_ || opening_.valid()) return;
  if (!std::exchange(isLossTold_, true)) return tellChange();
  if (backOff_.isDue(now)) beginOpening();
}

/// A server that was waited for once and still doesn't answer isn't waited for again.
void CubebOutput::awaitOpened() {
  if (!opening_.valid()) {
    beginOpening();
    opening_.wait_for(patience);
  }
  takeOpened();
}

void CubebOutput::beginOpening() {
  close();
  opening_ =
      thread_.run([feed = feed_, backend = backend_] { return CubebStream::openOutput(feed, backend); });
  lastBeat_ = Clock::now();
  timer_.start();
}

void CubebOutput::takeOpened() {
  if (!isReady(opening_)) return;
  stream_ = opening_.get();
  if (!stream_) return backOff_.postpone(Clock::now());
  backend_ = stream_->backend();
  flow_.restart(feed_->callbackCount());
}

void CubebOutput::close() {
  looking_ = {};
  if (stream_) thread_.run([stream = std::move(stream_)]() mutable { stream.reset(); });
}

void CubebOutput::search() {
  if (phase_ == Phase::searching) return;
  phase_ = Phase::searching;
  isLossTold_ = true;
  mustFlow_ = false;
  backOff_.restart(Clock::now());
  timer_.start();
}

/// A stream that merely stalled is kept, as it goes on by itself when its device does.
void CubebOutput::lose(Loss loss) {
  feed_->silence();
  search();
  if (loss == Loss::stalled) {
    mustFlow_ = true;
  } else {
    close();
  }
  tellChange();
}

/// Told when the new stream stands, or when none can be had.
void CubebOutput::changeRate() {
  feed_->silence();
  search();
  isLossTold_ = false;
  beginOpening();
}

}  // namespace platform
