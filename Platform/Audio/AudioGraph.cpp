#include "Platform/Audio/AudioGraph.h"

#include <algorithm>
#include <chrono>
#include <thread>

#include "Platform/Audio/FlushDenormals.h"
#include "Platform/Audio/Samples.h"

namespace platform {
namespace {

constexpr float largestUsable = 0x1p64F;  // effects can work with what is below

void add(float* __restrict sum, const float* __restrict samples, int frameCount) noexcept {
  for (int n = 0; n < frameCount; ++n) sum[n] += samples[n];
}

}  // namespace

AudioGraph::AudioGraph(double sampleRate, WorkerTeam* team)
    : sampleRate_(sampleRate), team_(team), current_(nullptr) {
  mainMixer_.prepare(sampleRate);
  setStrips({});
}

AudioGraph::~AudioGraph() = default;

void AudioGraph::setStrips(std::vector<Strip> strips) {
  const std::size_t bufferCount = team_ ? strips.size() : 1;
  auto list = std::make_unique<StripList>(StripList{std::move(strips), std::vector<Buffers>(bufferCount)});
  current_.store(list.get());
  awaitBlockEnd();
  published_ = std::move(list);
}

/// A block that starts after the list was published sees it, since both sides order their two accesses
/// sequentially: only a block that is in flight now can still hold the old one.
void AudioGraph::awaitBlockEnd() const noexcept {
  const unsigned edges = blockEdges_.load();
  while (edges % 2 == 1 && blockEdges_.load() == edges)
    std::this_thread::sleep_for(std::chrono::microseconds(50));
}

void AudioGraph::render(double sampleTime, int frameCount, float* left, float* right) noexcept {
  blockEdges_.fetch_add(1);
  StripList& list = *current_.load();
  for (int start = 0; start < frameCount; start += maximumFrames) {
    const Piece piece{sampleTime + start, std::min(frameCount - start, maximumFrames)};
    renderPiece(list, piece, left + start, right + start);
  }
  blockEdges_.fetch_add(1);
}

void AudioGraph::renderPiece(StripList& list, Piece piece, float* left, float* right) noexcept {
  const int stripCount = static_cast<int>(list.strips.size());
  const auto strip = [&](int i) -> const Strip& { return list.strips[static_cast<std::size_t>(i)]; };
  const auto buffers = [&](int i) -> Buffers& {
    return list.buffers[static_cast<std::size_t>(team_ ? i : 0)];
  };
  if (team_) team_->run(stripCount, [&](int i) { renderStrip(strip(i), buffers(i), piece); });

  std::fill_n(left, piece.frameCount, 0.0F);
  std::fill_n(right, piece.frameCount, 0.0F);
  for (int i = 0; i < stripCount; ++i) {
    if (!team_) renderStrip(strip(i), buffers(i), piece);
    mix(buffers(i), left, right, piece.frameCount);
  }
  {
    const FlushDenormals guard;
    mainMixer_.process(left, right, piece.frameCount);
  }
  feedTap(left, right, piece.frameCount);
}

/// A block that no effect could work with becomes silence.
void AudioGraph::renderStrip(const Strip& strip, Buffers& buffers, Piece piece) noexcept {
  float* const mono = buffers.mono.data();
  strip.source->render(piece.sampleTime, piece.frameCount,
                       {mono, static_cast<std::size_t>(piece.frameCount)});
  const float level = peak(mono, piece.frameCount);
  const bool isUsable = level < largestUsable;
  if (!isUsable) std::fill_n(mono, piece.frameCount, 0.0F);
  applyEffects(strip, buffers, piece.frameCount, isUsable && level > 0 ? Input::sounding : Input::silent);
}

void AudioGraph::applyEffects(const Strip& strip, Buffers& buffers, int frameCount, Input input) noexcept {
  const FlushDenormals guard;
  float *const mono = buffers.mono.data(), *const left = buffers.left.data(),
               *const right = buffers.right.data();
  buffers.isSilent = input == Input::silent && strip.equalizer->isQuiet() && strip.delay->isQuiet() &&
                     strip.reverb->isQuiet();
  if (buffers.isSilent) {
    strip.equalizer->skip(frameCount);
    strip.delay->skip(frameCount);
    strip.reverb->skip(frameCount);
    strip.channel->skip(frameCount);
    return;
  }
  strip.equalizer->process(mono, frameCount);
  strip.delay->process(mono, frameCount);
  strip.reverb->process(mono, left, right, frameCount);
  strip.channel->process(left, right, frameCount);
}

void AudioGraph::mix(const Buffers& buffers, float* left, float* right, int frameCount) noexcept {
  if (buffers.isSilent) return;
  const FlushDenormals guard;
  add(left, buffers.left.data(), frameCount);
  add(right, buffers.right.data(), frameCount);
}

void AudioGraph::feedTap(const float* left, const float* right, int frameCount) noexcept {
  if (!tap_) return;
  for (int start = 0, count = 0; start < frameCount; start += count) {
    count = std::min(frameCount - start, tapFrames - tappedFrames_);
    tapPeak_ = std::max({tapPeak_, peak(left + start, count), peak(right + start, count)});
    tappedFrames_ += count;
    if (tappedFrames_ < tapFrames) continue;
    tap_(tapPeak_);
    tapPeak_ = 0;
    tappedFrames_ = 0;
  }
}

}  // namespace platform
