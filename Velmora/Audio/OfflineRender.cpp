#include "Velmora/Audio/OfflineRender.h"

#include <algorithm>
#include <cmath>
#include <thread>

#include "Platform/Tasks/Cancelled.h"
#include "Velmora/Audio/SilentInstrument.h"

namespace velmora {

namespace {

constexpr std::int64_t blockFrames = RenderContext::maxFrames;
constexpr double progressStep = 0.01;

double secondsOf(const Song& song) { return song.songLengthBeats() * 60 / song.bpm; }

/// The most frames that a limit in seconds allows.
std::int64_t frameLimit(double maximumSeconds) {
  if (!std::isfinite(maximumSeconds)) return 882000;
  if (maximumSeconds <= 0.1) return 4410;
  return static_cast<std::int64_t>(std::min(maximumSeconds, 1803.0) * OfflineRender::sampleRate);
}

/// Tells the fraction done in steps of at least a hundredth, and the end.
class Progress {
 public:
  Progress(std::int64_t totalFrames, const OfflineRender::OnProgress& listener)
      : totalFrames_(totalFrames), listener_(listener) {}

  void tell(std::int64_t frames) {
    const double fraction = static_cast<double>(frames) / static_cast<double>(totalFrames_);
    if (!listener_ || (fraction - lastTold_ < progressStep && frames != totalFrames_)) return;
    listener_(fraction);
    lastTold_ = fraction;
  }

 private:
  const std::int64_t totalFrames_;
  const OfflineRender::OnProgress& listener_;
  double lastTold_ = -1;
};

int threadsFor(const OfflineRenderRequest& request) {
  const int wanted = request.threadCount > 0
                         ? request.threadCount
                         : static_cast<int>(std::max(1U, std::thread::hardware_concurrency()));
  return std::clamp(wanted, 1, std::max(1, static_cast<int>(request.song.tracks.size())));
}

}  // namespace

OfflineRender::OfflineRender(const OfflineRenderRequest& request)
    : team_(threadsFor(request)), graph_(sampleRate, &team_) {
  countFrames(request);
  const Song& song = request.song;
  prepareTransport(song);
  store_.publish(std::make_shared<const RenderSnapshot>(song, PlaybackMode::song, request.samples));

  const bool isAnySoloed =
      std::any_of(song.tracks.begin(), song.tracks.end(), [](const Track& track) { return track.isSoloed; });
  std::vector<platform::Strip> strips;
  for (const Track& track : song.tracks) {
    tracks_.push_back(makeTrack(track, isAnySoloed));
    strips.push_back(tracks_.back().effects->strip(*tracks_.back().context));
  }
  graph_.setStrips(std::move(strips));
  graph_.setOutputVolume(song.masterVolume);
}

void OfflineRender::countFrames(const OfflineRenderRequest& request) {
  const double seconds = secondsOf(request.song);
  if (!std::isfinite(seconds) || seconds > longestSeconds) throw ExportError::tooLong();
  const auto songFrames = static_cast<std::int64_t>(std::ceil(seconds * sampleRate));
  totalFrames_ = songFrames + tailFrames;
  if (request.maximumSeconds) totalFrames_ = std::min(totalFrames_, frameLimit(*request.maximumSeconds));
  stopFrame_ = std::min(totalFrames_, songFrames);
}

void OfflineRender::prepareTransport(const Song& song) {
  transport_.setBPM(song.bpm);
  transport_.setMode(PlaybackMode::song);
  // Four seconds past the song's end, so that the tail never wraps; the song's own loop plays no part here.
  transport_.setLoop(LoopRange{0, song.songLengthBeats() + song.bpm / 60 * 4});
  transport_.play();
}

OfflineRender::TrackNode OfflineRender::makeTrack(const Track& track, bool isAnySoloed) {
  auto renderer = std::make_unique<TrackRenderer>(track.id, makeInstrument(track.kind));
  auto audition = std::make_unique<LiveNoteRenderer>(std::make_unique<SilentInstrument>());
  renderer->prepare(sampleRate, RenderContext::maxFrames);
  audition->prepare(sampleRate, RenderContext::maxFrames);

  const bool isHeard = !track.isMuted && (!isAnySoloed || track.isSoloed);
  auto effects = std::make_unique<TrackEffects>(sampleRate);
  effects->apply(track.fx);
  effects->channel().setPan(track.pan);
  effects->channel().setOutputVolume(isHeard ? track.volume : 0);
  return {std::make_unique<RenderContext>(std::move(renderer), std::move(audition), transport_, store_,
                                          sampleRate),
          std::move(effects)};
}

void OfflineRender::run(const Sink& sink, const OnProgress& onProgress, const std::stop_token& stop) {
  const std::int64_t roundFrames = graph_.roundFrames();
  std::vector<float> left(static_cast<std::size_t>(roundFrames)), right(left.size());
  Progress progress(totalFrames_, onProgress);
  for (std::int64_t position = 0; position < totalFrames_;) {
    if (stop.stop_requested()) throw platform::Cancelled();
    const std::int64_t end = position < stopFrame_ ? stopFrame_ : totalFrames_;
    const std::int64_t frames = std::min(roundFrames, end - position);
    if (position == stopFrame_) transport_.stop();  // from here notes release and the tail rings out
    graph_.render(static_cast<double>(position), static_cast<int>(frames), left.data(), right.data());

    for (std::int64_t start = 0; start < frames; start += blockFrames) {
      const auto first = static_cast<std::size_t>(start);
      const auto count = static_cast<std::size_t>(std::min(blockFrames, frames - start));
      sink(std::span(left).subspan(first, count), std::span(right).subspan(first, count));
      progress.tell(position + start + static_cast<std::int64_t>(count));
    }
    position += frames;
  }
}

}  // namespace velmora
