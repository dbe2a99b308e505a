#pragma once

#include <cstdint>
#include <memory>
#include <sstream>
#include <string>

#include "VelmoraCore/Instruments/Instrument.h"
#include "VelmoraCore/Render/RenderSnapshot.h"
#include "VelmoraCore/Song/Song.h"

namespace velmora::testing {

/// A song of one synth track whose pattern has these notes of velocity 100, as "60@0+1 64@3.5+0.5" (pitch,
/// start, duration), and with these clips of the pattern, as "0+16 20+2.5" (start, length).
inline Song songOf(double bpm, double patternBeats, const std::string& score, const std::string& clips = "") {
  Song song;
  song.id = UUID::random();
  song.bpm = bpm;
  Pattern pattern = *song.pattern(*song.addTrack(TrackKind::synth(SynthPreset::miniSynth)).selectedPatternID);
  pattern.lengthBeats = patternBeats;
  char sign = 0;
  double start = 0, length = 0;
  int pitch = 0;
  for (std::istringstream words(score); words >> pitch >> sign >> start >> length;)
    pattern.notes.write().push_back({UUID::random(), static_cast<std::uint8_t>(pitch), start, length, 100});
  song.update(pattern);
  for (std::istringstream words(clips); words >> start >> length;)
    song.update(Clip{UUID::random(), pattern.trackID, ClipSource::pattern(pattern.id), start, length});
  return song;
}

/// Events as "on60@0 off60@1".
inline std::string textOf(const SharedList<NoteEvent>& events) {
  std::ostringstream text;
  text.precision(7);
  const char* space = "";
  for (const NoteEvent& e : events) {
    text << space << (e.isOn ? "on" : "off") << int{e.pitch} << '@' << e.beat;
    space = " ";
  }
  return text.str();
}

/// Writes down what it is told, with frames counted from its first block: "on60@0 off60@300 cut@512".
class RecordingInstrument final : public Instrument {
 public:
  explicit RecordingInstrument(std::string& log) : log_(log) {}

  void prepare(double, int) override {}
  void noteOn(std::uint8_t pitch, std::uint8_t, std::int64_t atFrame) noexcept override {
    write("on" + std::to_string(pitch), atFrame);
  }
  void noteOff(std::uint8_t pitch, std::int64_t atFrame) noexcept override {
    write("off" + std::to_string(pitch), atFrame);
  }
  void allNotesOff() noexcept override { write("cut", 0); }
  void render(float* into, int frameCount) noexcept override {
    for (int i = 0; i < frameCount; ++i) into[i] += 1;
    rendered_ += frameCount;
  }

 private:
  void write(const std::string& what, std::int64_t atFrame) {
    log_ += (log_.empty() ? "" : " ") + what + "@" + std::to_string(rendered_ + atFrame);
  }

  std::string& log_;
  std::int64_t rendered_ = 0;
};

}  // namespace velmora::testing
