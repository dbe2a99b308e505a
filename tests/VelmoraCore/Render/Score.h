#pragma once

#include <cstdint>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "VelmoraCore/Instruments/Instrument.h"
#include "VelmoraCore/Render/RenderSnapshot.h"
#include "VelmoraCore/Song/Song.h"

namespace velmora::testing {

/// Notes as "60@0+1 64@3.5+0.5" (pitch, start, duration), at velocity 100.
inline std::vector<Note> notes(const std::string& text) {
  std::vector<Note> result;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    const auto at = word.find('@'), plus = word.find('+', at);
    result.push_back({UUID::random(), static_cast<std::uint8_t>(std::stoi(word.substr(0, at))),
                      std::stod(word.substr(at + 1, plus - at - 1)), std::stod(word.substr(plus + 1)), 100});
  }
  return result;
}

/// A song of one synth track whose pattern has these notes.
inline Song songOf(double bpm, double patternBeats, const std::string& score) {
  Song song;
  song.id = UUID::random();
  song.bpm = bpm;
  Pattern pattern = *song.pattern(*song.addTrack(TrackKind::synth(SynthPreset::miniSynth)).selectedPatternID);
  pattern.lengthBeats = patternBeats;
  pattern.notes = SharedList(notes(score));
  song.update(pattern);
  return song;
}

/// The same with clips of the pattern, as "0+16 20+2.5" (start, length).
inline Song songOf(double bpm, double patternBeats, const std::string& score, const std::string& clips) {
  Song song = songOf(bpm, patternBeats, score);
  std::istringstream words(clips);
  for (std::string word; words >> word;) {
    const auto plus = word.find('+');
    song.update(Clip{UUID::random(), song.tracks[0].id, ClipSource::pattern(song.patterns[0].id),
                     std::stod(word.substr(0, plus)), std::stod(word.substr(plus + 1))});
  }
  return song;
}

/// Events as "on60@0 off60@1".
inline std::string textOf(const SharedList<NoteEvent>& events) {
  std::ostringstream text;
  for (const NoteEvent& e : events) {
    text << (e.beat == events.front().beat && &e == &events.front() ? "" : " ") << (e.isOn ? "on" : "off")
         << int{e.pitch} << '@' << e.beat;
  }
  return text.str();
}

/// Writes down what it is told, with frames counted from its first block: "on60@0 off60@300 cut@512".
class RecordingInstrument final : public Instrument {
 public:
  explicit RecordingInstrument(std::string& log) : log_(log) {}

  void prepare(double, int) override {}
  void noteOn(std::uint8_t pitch, std::uint8_t, std::int64_t atFrame) noexcept override {
    write("on", pitch, atFrame);
  }
  void noteOff(std::uint8_t pitch, std::int64_t atFrame) noexcept override { write("off", pitch, atFrame); }
  void allNotesOff() noexcept override {
    log_ += (log_.empty() ? "cut@" : " cut@") + std::to_string(rendered_);
  }
  void render(float* into, int frameCount) noexcept override {
    for (int i = 0; i < frameCount; ++i) into[i] += 1;
    rendered_ += frameCount;
  }

 private:
  void write(const char* what, int pitch, std::int64_t atFrame) {
    log_ += (log_.empty() ? "" : " ") + std::string(what) + std::to_string(pitch) + "@" +
            std::to_string(rendered_ + atFrame);
  }

  std::string& log_;
  std::int64_t rendered_ = 0;
};

}  // namespace velmora::testing
