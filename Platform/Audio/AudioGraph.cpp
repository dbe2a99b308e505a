#include "Platform/Audio/AudioGraph.h"

#include <algorithm>
#include <chrono>
#include <thread>

#include "Platform/Audio/FlushDenormals.h"
#include "Platform/Audio/Samples.h"

namespace platform {
namespace {

// With a team: the buffers of all strips stay below 2 MiB where they can, and so in the processor's cache.
constexpr int mostPiecesPerRound = 4;
constexpr int mostBuffers = 32;
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
  const int stripCount = static_cast<int>(strips.size());
  const int pieces = team_ ? std::clamp(mostBuffers / std::max(stripCount, 1), 1, mostPiecesPerRound) : 1;
  std::vector<Buffers> buffers(team_ ? static_cast<std::size_t>(stripCount * pieces) : 1);
  auto list = std::make_unique<StripList>(StripList{std::move(strips), pieces, std::move(buffers)});
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
  const int roundFrames = list.piecesPerRound * maximumFrames;
  for (int start = 0; start < frameCount; start += roundFrames) {
    const Piece round{sampleTime + start, std::min(frameCount - start, roundFrames)};
    renderRound(list, round, left + start, right + start);
  }
  blockEdges_.fetch_add(1);
}

AudioGraph::Buffers& AudioGraph::buffers(StripList& list, int strip, int piece) const noexcept {
  return list.buffers[team_ ? static_cast<std::size_t>(strip * list.piecesPerRound + piece) : 0];
}

AudioGraph::Piece AudioGraph::pieceOf(Piece round, int number) noexcept {
  const int start = number * maximumFrames;
  return {round.sampleTime + start, std::min(round.frameCount - start, maximumFrames)};
}

void AudioGraph::renderRound(StripList& list, Piece round, float* left, float* right) noexcept {
  const int pieceCount = (round.frameCount + maximumFrames - 1) / maximumFrames;
  if (team_) {
    team_->run(static_cast<int>(list.strips.size()), [&](int strip) {
      for (int piece = 0; piece < pieceCount; ++piece)
        renderStrip(list.strips[static_cast<std::size_t>(strip)], buffers(list, strip, piece),
                    pieceOf(round, piece));
    });
    team_->run(pieceCount, [&](int piece) { sumPiece(list, round, piece, left, right); });
  } else {
    sumPiece(list, round, 0, left, right);
  }
  {
    const FlushDenormals guard;
    mainMixer_.process(left, right, round.frameCount);
  }
  feedTap(left, right, round.frameCount);
}

void AudioGraph::sumPiece(StripList& list, Piece round, int number, float* left, float* right) noexcept {
  const Piece piece = pieceOf(round, number);
  const auto start = static_cast<std::ptrdiff_t>(number) * maximumFrames;
  float *const leftSum = left + start, *const rightSum = right + start;
  std::fill_n(leftSum, piece.frameCount, 0.0F);
  std::fill_n(rightSum, piece.frameCount, 0.0F);
  for (int strip = 0; strip < static_cast<int>(list.strips.size()); ++strip) {
    Buffers& rendered = buffers(list, strip, number);
    if (!team_) renderStrip(list.strips[static_cast<std::size_t>(strip)], rendered, piece);
    mix(rendered, leftSum, rightSum, piece.frameCount);
  }
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
