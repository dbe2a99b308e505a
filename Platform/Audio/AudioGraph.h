#pragma once

#include <array>
#include <atomic>
#include <functional>
#include <memory>
#include <vector>

#include "Platform/Audio/Delay.h"
#include "Platform/Audio/Equalizer.h"
#include "Platform/Audio/MixerNode.h"
#include "Platform/Audio/Reverb.h"
#include "Platform/Audio/SourceNode.h"
#include "Platform/Audio/WorkerTeam.h"

namespace platform {

/// One row of the graph: a mono source through its effects to its channel strip. The units belong to somebody
/// else, must outlive their place in the graph and are prepared for its sample rate. None may be null.
struct Strip {
  SourceNode* source = nullptr;
  Equalizer* equalizer = nullptr;
  Delay* delay = nullptr;
  Reverb* reverb = nullptr;
  MixerNode* channel = nullptr;
};

/// The audio graph, of fixed shape: strips, summed in their order, the main mixer's volume, a tap.
///
/// The strip list is never changed, only replaced as a whole. Denormals are flushed round the effects and the
/// mix, never round the sources. With a `WorkerTeam` the strips of a block render in parallel, each into
/// buffers of its own, and are summed in the same order: the result is the same, bit for bit, for any number
/// of threads. A long pull then runs several pieces of a strip in a row, so that threads seldom wait for each
/// other.
class AudioGraph {
 public:
  static constexpr int maximumFrames = 4096;  // of one pull from a source
  static constexpr int tapFrames = 1024;

  /// `team`, if any, must outlive the graph; it is for rendering offline.
  explicit AudioGraph(double sampleRate, WorkerTeam* team = nullptr);
  ~AudioGraph();
  AudioGraph(const AudioGraph&) = delete;
  AudioGraph& operator=(const AudioGraph&) = delete;

  double sampleRate() const noexcept { return sampleRate_; }

  /// One thread at a time, not the audio thread. Publishes the list and returns once the block in flight, if
  /// any, has ended: what is no longer in the list isn't called again and may be destroyed.
  void setStrips(std::vector<Strip> strips);
  /// One thread at a time. The main mixer's volume, which glides.
  void setOutputVolume(float volume) noexcept { mainMixer_.setOutputVolume(volume); }
  float outputVolume() const noexcept { return mainMixer_.outputVolume(); }
  /// Before the audio thread runs. `tap` is called on it, with the largest absolute sample of both sides in
  /// each stretch of `tapFrames` frames of the output.
  void setTap(std::function<void(float peak)> tap) { tap_ = std::move(tap); }

  /// The frames to pull at once for the most speed: with a team the strips, if they are few, render several
  /// pieces in a row.
  int roundFrames() const noexcept { return published_->piecesPerRound * maximumFrames; }

  /// [audio thread] `sampleTime` is that of the first frame. A pull of more than `maximumFrames` frames
  /// reaches the sources in pieces with sample times of their own.
  void render(double sampleTime, int frameCount, float* left, float* right) noexcept;

 private:
  struct Buffers {
    std::array<float, maximumFrames> mono, left, right;
    bool isSilent = true;  // then `left` and `right` are unspecified
  };
  struct StripList {
    std::vector<Strip> strips;
    int piecesPerRound;
    std::vector<Buffers> buffers;  // with a team one for each piece of each strip, otherwise one for all
  };
  struct Piece {  // of time
    double sampleTime;
    int frameCount;
  };

  enum class Input { silent, sounding };

  static void renderStrip(const Strip& strip, Buffers& buffers, Piece piece) noexcept;
  static void applyEffects(const Strip& strip, Buffers& buffers, int frameCount, Input input) noexcept;
  static void mix(const Buffers& buffers, float* left, float* right, int frameCount) noexcept;
  static Piece pieceOf(Piece round, int number) noexcept;
  Buffers& buffers(StripList& list, int strip, int piece) const noexcept;
  void renderRound(StripList& list, Piece round, float* left, float* right) noexcept;
  void sumPiece(StripList& list, Piece round, int number, float* left, float* right) noexcept;
  void feedTap(const float* left, const float* right, int frameCount) noexcept;
  void awaitBlockEnd() const noexcept;

  const double sampleRate_;
  WorkerTeam* const team_;
  std::unique_ptr<StripList> published_;  // owns what `current_` points to
  std::atomic<StripList*> current_;
  std::atomic<unsigned> blockEdges_{0};  // counts starts and ends of blocks: odd while one is in flight
  MixerNode mainMixer_;
  std::function<void(float peak)> tap_;
  float tapPeak_ = 0;
  int tappedFrames_ = 0;
};

}  // namespace platform
