#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "Platform/Audio/AudioGraph.h"
#include "Platform/Audio/OutputDevice.h"
#include "Velmora/Audio/PeakMeter.h"
#include "Velmora/Audio/RenderContext.h"
#include "Velmora/Audio/TrackEffects.h"
#include "VelmoraCore/Song/Song.h"

namespace velmora {

/// The live sound: one strip of the graph for every track, played by the desktop's output.
///
/// Main thread; the audio thread only renders the published strips. Runs as long as the application: an idle
/// transport renders silence. It survives the loss of the output: strips are rebuilt for the rate of the next
/// one and the transport keeps its beat.
class AudioEngine {
 public:
  explicit AudioEngine(std::unique_ptr<platform::OutputDevice> output);
  ~AudioEngine();
  AudioEngine(const AudioEngine&) = delete;
  AudioEngine& operator=(const AudioEngine&) = delete;

  /// Both must outlive the engine. Asks the output for its rate.
  void attach(TransportController& transport, SnapshotStore& snapshotStore);

  /// Throws `platform::DeviceError`; the engine then starts by itself once there is an output, and tells so.
  void start();
  void stop() noexcept;

  /// Brings the strips in line with the song's tracks; a track whose kind or preset changed gets a new one.
  /// Before `attach` it only takes note.
  void sync(const Song& song);

  /// Volume, pan, mute, solo, effects and the main volume, without touching the strips.
  void applyMix(const Song& song);

  /// Plays or releases a key by hand; an unknown track does nothing.
  void setAuditionKey(int pitch, bool isDown, const UUID& trackID);
  void releaseAuditionKeys();

  /// The level of a track; null without a strip. Valid until the next change of the strips.
  const PeakMeter* meter(const UUID& trackID) const;
  const PeakMeter& masterMeter() const noexcept { return masterMeter_; }

  bool isRunning() const noexcept { return isRunning_; }
  double outputSampleRate() const noexcept { return outputSampleRate_; }

  /// What didn't work while strips were built, in order.
  const std::vector<std::string>& warnings() const noexcept { return warnings_; }

  /// `onError` hears of an output that was lost and could not be started again.
  void setOnError(std::function<void(const std::string&)> onError) { onError_ = std::move(onError); }
  /// `onRecovery` hears that sound flows again after an error or a failed start.
  void setOnRecovery(std::function<void()> onRecovery) { onRecovery_ = std::move(onRecovery); }

 private:
  struct TrackNode {
    TrackKind kind;
    std::unique_ptr<RenderContext> context;
    std::unique_ptr<TrackEffects> effects;
  };
  /// What the output pulls: the graph of the day.
  struct Source final : platform::OutputSource {
    explicit Source(std::unique_ptr<platform::AudioGraph>& current) : graph(current) {}
    void render(double sampleTime, int frameCount, float* left, float* right) noexcept override {
      graph->render(sampleTime, frameCount, left, right);
    }
    std::unique_ptr<platform::AudioGraph>& graph;
  };
  using TrackNodes = std::unordered_map<UUID, TrackNode>;

  bool isAttached() const noexcept { return transport_ && snapshotStore_; }
  void readOutputRate();
  void makeGraph();
  void addNode(const Track& track);
  void addNode(const Track& track, std::unique_ptr<TrackRenderer> renderer);
  TrackNodes takeDoomedNodes(const Song& song);
  void assignPlayhead();
  void publishStrips();
  void rebuild();
  void outputChanged();
  void run();

  const std::unique_ptr<platform::OutputDevice> output_;
  std::unique_ptr<platform::AudioGraph> graph_;
  Source source_{graph_};
  PeakMeter masterMeter_;
  std::optional<Song> lastSong_;
  TransportController* transport_ = nullptr;
  SnapshotStore* snapshotStore_ = nullptr;
  TrackNodes trackNodes_;
  std::vector<UUID> trackOrder_;
  bool isRunning_ = false;
  bool isWanted_ = false;  // a start was asked for
  double outputSampleRate_ = 48000;
  std::vector<std::string> warnings_;
  std::function<void(const std::string&)> onError_;
  std::function<void()> onRecovery_;
};

}  // namespace velmora
