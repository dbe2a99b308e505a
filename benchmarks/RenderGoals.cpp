#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "Platform/Audio/AudioFile.h"
#include "Velmora/Audio/OfflineExporter.h"
#include "Velmora/Audio/SilentInstrument.h"
#include "VelmoraCore/Instruments/PolySynth.h"
#include "benchmarks/FixedWork.h"
#include "benchmarks/Goals.h"
#include "benchmarks/TrackRack.h"
#include "benchmarks/support/Measure.h"
#include "tests/VelmoraCore/Instruments/ReferencePolySynth.h"
#include "tests/support/TemporaryFolder.h"

namespace velmora::benchmarks {

namespace {

constexpr int rounds = 5;
constexpr int wallRounds = 9;
constexpr auto int16 = platform::AudioFileWriter::SampleFormat::int16;

std::string bytesOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// A song through the product's own export.
struct Export {
  Song song;
  std::filesystem::path path;

  void operator()(int threadCount) const {
    OfflineExporter::renderFile({song, {}, {}, threadCount}, path, {.format = int16});
  }
  double processorSeconds() const {
    return elapsed(CLOCK_PROCESS_CPUTIME_ID, [&] { (*this)(1); });
  }
  double wallSeconds(int threadCount) const {
    return elapsed(CLOCK_MONOTONIC, [&] { (*this)(threadCount); });
  }
};

/// The export's own steps with another synthesizer: the same blocks, graph, tail and file.
void exportWith(const TrackRack::MakeInstrument& makeInstrument, const Song& song,
                const std::filesystem::path& path) {
  constexpr double sampleRate = OfflineRender::sampleRate;
  constexpr std::int64_t blockFrames = RenderContext::maxFrames;
  const auto songFrames =
      static_cast<std::int64_t>(std::ceil(song.songLengthBeats() * 60 / song.bpm * sampleRate));
  const std::int64_t totalFrames = songFrames + OfflineRender::tailFrames;

  TrackRack rack(song, sampleRate, {makeInstrument, [] { return std::make_unique<SilentInstrument>(); }});
  rack.transport().setLoop(LoopRange{0, song.songLengthBeats() * 2});  // past the end, so that it never wraps
  platform::AudioFileWriter file(path, static_cast<int>(sampleRate), int16);
  std::vector<float> left(blockFrames), right(blockFrames);
  for (std::int64_t position = 0; position < totalFrames;) {
    const std::int64_t end = position < songFrames ? songFrames : totalFrames;
    const auto frames = static_cast<std::size_t>(std::min(blockFrames, end - position));
    if (position == songFrames) rack.transport().stop();
    rack.graph().render(static_cast<double>(position), static_cast<int>(frames), left.data(), right.data());
    file.write({left.data(), frames}, {right.data(), frames});
    position += static_cast<std::int64_t>(frames);
  }
  file.close();
}

std::unique_ptr<Instrument> scalarSynth() {
  return std::make_unique<testing::ReferencePolySynth>(FixedWork::preset);
}

std::unique_ptr<Instrument> baselineSynth() {
  return std::make_unique<PolySynth>(FixedWork::preset, voiceKernels().back());
}

void measureOneThread(Report& report, const std::filesystem::path& folder) {
  const Export dry{FixedWork{}.song(), folder / "dry.wav"};
  const Export wet{FixedWork{.effects = Effects::wet}.song(), folder / "wet.wav"};
  const Export wide{FixedWork{.trackCount = 32}.song(), folder / "wide.wav"};
  const Export silent{FixedWork{.notes = Notes::none}.song(), folder / "silent.wav"};
  const Export wetSilent{FixedWork{.effects = Effects::wet, .notes = Notes::none}.song(), silent.path};
  const auto with = [&](const TrackRack::MakeInstrument& makeInstrument, const char* name) {
    return elapsed(CLOCK_PROCESS_CPUTIME_ID, [&] { exportWith(makeInstrument, dry.song, folder / name); });
  };
  const auto processor = [](const Export& work) { return [&work] { return work.processorSeconds(); }; };

  const auto [scalar, vector, baseline, effects, tracks32, silence, wetSilence] = interleavedMedians(
      rounds, [&] { return with(scalarSynth, "scalar.wav"); }, processor(dry),
      [&] { return with(baselineSynth, "baseline.wav"); }, processor(wet), processor(wide), processor(silent),
      processor(wetSilent));

  const auto add = [&report](const std::string& name, double figure, double reference, double most) {
    report.add(name, Amount::seconds(figure), Amount::seconds(reference), Goal::ratio(most));
  };
  const bool isBaselineOnly = voiceKernels().size() == 1;
  add("dry, one thread (ref: plain scalar)", vector, scalar, isBaselineOnly ? 0.2 : 0.125);
  add("dry, baseline instructions (ref: plain scalar)", baseline, scalar, 0.2);
  const std::string dryBytes = bytesOf(dry.path);
  report.addSameBytes("dry and plain scalar: the file", bytesOf(folder / "scalar.wav") == dryBytes);
  report.addSameBytes("dry and baseline instructions: the file",
                      bytesOf(folder / "baseline.wav") == dryBytes);
  add("wet, one thread (ref: dry)", effects, vector, 1.8);
  add("silence (ref: dry)", silence, vector, 0.05);
  add("silence, effects on (ref: dry)", wetSilence, vector, 0.05);
  add("32 tracks, dry (ref: 8 tracks)", tracks32, vector, 4.2);
}

void measureTwoThreads(Report& report, const std::filesystem::path& folder, Effects effects) {
  const std::string name = effects == Effects::wet ? "wet" : "dry";
  const Export one{FixedWork{.effects = effects}.song(), folder / "one.wav"};
  const Export two{one.song, folder / "two.wav"};
  const auto [wallOne, wallTwo] = interleaved(
      wallRounds, [&] { return one.wallSeconds(1); }, [&] { return two.wallSeconds(2); });
  const auto add = [&](const std::string& what, double figure, double reference) {
    report.add(name + ", two threads, " + what + " (ref: one)", Amount::seconds(figure),
               Amount::seconds(reference), Goal::ratio(0.6));
  };
  add("wall time", median(wallTwo), median(wallOne));
  add("best wall time", least(wallTwo), least(wallOne));  // what an idle machine would come near to
  report.addSameBytes(name + ", one thread and two: the file", bytesOf(one.path) == bytesOf(two.path));
}

}  // namespace

void measureRenders(Report& report) {
  const testing::TemporaryFolder folder;
  measureOneThread(report, folder.path());
  measureTwoThreads(report, folder.path(), Effects::dry);
  measureTwoThreads(report, folder.path(), Effects::wet);
}

}  // namespace velmora::benchmarks
