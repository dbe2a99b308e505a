#include "benchmarks/TrackRack.h"

#include <utility>

namespace velmora::benchmarks {

TrackRack::TrackRack(const Song& song, double sampleRate, const Instruments& instruments)
    : graph_(sampleRate) {
  transport_.setBPM(song.bpm);
  transport_.setMode(PlaybackMode::song);
  transport_.play();
  store_.publish(std::make_shared<const RenderSnapshot>(song, PlaybackMode::song, AudioSamples{}));
  std::vector<platform::Strip> strips;
  for (const Track& track : song.tracks) {
    nodes_.push_back(makeNode(track, instruments));
    strips.push_back(nodes_.back().effects->strip(*nodes_.back().context));
  }
  graph_.setStrips(std::move(strips));
  graph_.setOutputVolume(song.masterVolume);
}

TrackRack::Node TrackRack::makeNode(const Track& track, const Instruments& instruments) {
  const double sampleRate = graph_.sampleRate();
  auto renderer = std::make_unique<TrackRenderer>(track.id, instruments.track());
  auto audition = std::make_unique<LiveNoteRenderer>(instruments.audition());
  renderer->prepare(sampleRate, RenderContext::maxFrames);
  audition->prepare(sampleRate, RenderContext::maxFrames);
  auto effects = std::make_unique<TrackEffects>(sampleRate);
  effects->apply(track.fx);
  effects->channel().setPan(track.pan);
  effects->channel().setOutputVolume(track.volume);
  return {std::make_unique<RenderContext>(std::move(renderer), std::move(audition), transport_, store_,
                                          sampleRate),
          std::move(effects)};
}

}  // namespace velmora::benchmarks
