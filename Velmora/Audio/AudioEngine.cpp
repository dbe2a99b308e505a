#include "Velmora/Audio/AudioEngine.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "Velmora/Audio/SilentInstrument.h"

namespace velmora {

namespace {

constexpr double fallbackRate = 48000;

bool isSupported(double sampleRate) { return sampleRate >= 8000 && sampleRate <= 384000; }

std::string decimalText(double value) {
  std::array<char, 32> text;
  return {text.data(), std::to_chars(text.begin(), text.end(), value).ptr};
}

/// What the channel strip of a track plays at, after mute and solo.
float audibleVolume(const Track& track, bool isAnySoloed) {
  const bool isHeard = !track.isMuted && (!isAnySoloed || track.isSoloed);
  return isHeard ? std::clamp(track.volume, 0.0F, 1.0F) : 0;
}

}  // namespace

AudioEngine::AudioEngine(std::unique_ptr<platform::OutputDevice> output) : output_(std::move(output)) {
  makeGraph();
  output_->setOnChange([this] { outputChanged(); });
}

AudioEngine::~AudioEngine() { stop(); }

void AudioEngine::attach(TransportController& transport, SnapshotStore& snapshotStore) {
  transport_ = &transport;
  snapshotStore_ = &snapshotStore;
  readOutputRate();
  makeGraph();
}

void AudioEngine::readOutputRate() {
  const double rate = output_->sampleRate();
  outputSampleRate_ = rate > 0 ? rate : fallbackRate;
}

/// Nothing plays while a graph is replaced.
void AudioEngine::makeGraph() {
  graph_ = std::make_unique<platform::AudioGraph>(outputSampleRate_);
  graph_->setTap([this](float peak) { masterMeter_.store(peak); });
}

void AudioEngine::start() {
  isWanted_ = true;
  if (!isRunning_) run();
}

/// The output's sample time starts from its own origin: a transport that plays is stopped and started, so
/// that it goes on from the last rendered beat.
void AudioEngine::run() {
  if (transport_ && transport_->state().isPlaying) {
    transport_->stop();
    transport_->play();
  }
  output_->start(source_);
  isRunning_ = true;
}

void AudioEngine::stop() noexcept {
  isWanted_ = false;
  output_->stop();
  isRunning_ = false;
}

void AudioEngine::sync(const Song& song) {
  lastSong_ = song;
  if (!isAttached()) return;
  const TrackNodes doomed = takeDoomedNodes(song);
  for (const Track& track : song.tracks)
    if (!trackNodes_.contains(track.id)) addNode(track);

  trackOrder_.clear();
  for (const Track& track : song.tracks) trackOrder_.push_back(track.id);
  assignPlayhead();
  applyMix(song);
  publishStrips();  // before the doomed nodes go
}

AudioEngine::TrackNodes AudioEngine::takeDoomedNodes(const Song& song) {
  TrackNodes doomed;
  for (auto entry = trackNodes_.begin(); entry != trackNodes_.end();) {
    const auto next = std::next(entry);
    const Track* track = song.track(entry->first);
    if (!track || track->kind != entry->second.kind) {
      entry->second.context->setPublishesPlayhead(false);
      doomed.insert(trackNodes_.extract(entry));
    }
    entry = next;
  }
  return doomed;
}

void AudioEngine::addNode(const Track& track) {
  addNode(track, std::make_unique<TrackRenderer>(track.id, makeInstrument(track.kind)));
}

/// Live notes get an instrument of their own, so that they never steal voices from the sequence.
void AudioEngine::addNode(const Track& track, std::unique_ptr<TrackRenderer> renderer) {
  if (!isSupported(outputSampleRate_)) {
    warnings_.push_back("Unsupported output sample rate " + decimalText(outputSampleRate_));
    return;
  }
  auto audition = std::make_unique<LiveNoteRenderer>(makeInstrument(track.kind));
  renderer->prepare(outputSampleRate_, RenderContext::maxFrames);
  audition->prepare(outputSampleRate_, RenderContext::maxFrames);
  auto context = std::make_unique<RenderContext>(std::move(renderer), std::move(audition), *transport_,
                                                 *snapshotStore_, outputSampleRate_);
  trackNodes_.emplace(
      track.id, TrackNode{track.kind, std::move(context), std::make_unique<TrackEffects>(outputSampleRate_)});
}

/// One track of all writes the playhead: the first that has a node.
void AudioEngine::assignPlayhead() {
  bool isAssigned = false;
  for (const UUID& trackID : trackOrder_) {
    const auto entry = trackNodes_.find(trackID);
    if (entry == trackNodes_.end()) continue;
    entry->second.context->setPublishesPlayhead(!isAssigned);
    isAssigned = true;
  }
}

void AudioEngine::publishStrips() {
  std::vector<platform::Strip> strips;
  for (const UUID& trackID : trackOrder_) {
    const auto entry = trackNodes_.find(trackID);
    if (entry != trackNodes_.end()) strips.push_back(entry->second.effects->strip(*entry->second.context));
  }
  graph_->setStrips(std::move(strips));
}

void AudioEngine::applyMix(const Song& song) {
  lastSong_ = song;
  const bool isAnySoloed =
      std::any_of(song.tracks.begin(), song.tracks.end(), [](const Track& track) { return track.isSoloed; });
  for (const Track& track : song.tracks) {
    const auto entry = trackNodes_.find(track.id);
    if (entry == trackNodes_.end()) continue;
    TrackEffects& effects = *entry->second.effects;
    effects.channel().setOutputVolume(audibleVolume(track, isAnySoloed));
    effects.channel().setPan(std::clamp(track.pan, -1.0F, 1.0F));
    effects.apply(track.fx);
  }
  graph_->setOutputVolume(std::clamp(song.masterVolume, 0.0F, 1.0F));
}

void AudioEngine::setAuditionKey(int pitch, bool isDown, const UUID& trackID) {
  const auto entry = trackNodes_.find(trackID);
  if (entry != trackNodes_.end()) entry->second.context->audition().setKey(pitch, isDown);
}

void AudioEngine::releaseAuditionKeys() {
  for (auto& [trackID, node] : trackNodes_) node.context->audition().releaseAll();
}

const PeakMeter* AudioEngine::meter(const UUID& trackID) const {
  const auto entry = trackNodes_.find(trackID);
  return entry == trackNodes_.end() ? nullptr : &entry->second.context->peakMeter();
}

void AudioEngine::outputChanged() {
  const bool wasRunning = std::exchange(isRunning_, false);
  rebuild();
  if (!isWanted_) return;
  try {
    run();
    if (!wasRunning && onRecovery_) onRecovery_();
  } catch (const platform::DeviceError& error) {
    if (wasRunning && onError_) onError_(std::string("Audio engine could not restart: ") + error.what());
  }
}

/// The renderers stay, prepared for the new rate, and lose their sounding notes; all else is made anew.
void AudioEngine::rebuild() {
  readOutputRate();
  makeGraph();
  masterMeter_.store(0);
  if (!isAttached()) return;
  TrackNodes before = std::exchange(trackNodes_, {});
  for (const UUID& trackID : trackOrder_) {
    const Track* track = lastSong_->track(trackID);
    if (!track) continue;
    const auto old = before.find(trackID);
    old == before.end() ? addNode(*track) : addNode(*track, old->second.context->takeRenderer());
  }
  assignPlayhead();
  if (lastSong_) applyMix(*lastSong_);
  publishStrips();
}

}  // namespace velmora
