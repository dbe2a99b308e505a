#include <filesystem>
#include <memory>

#include "Platform/Files/Files.h"
#include "Velmora/Projects/ProjectFiles.h"
#include "VelmoraCore/Render/SnapshotCompiler.h"
#include "VelmoraCore/Song/Limits.h"
#include "benchmarks/Goals.h"
#include "benchmarks/support/LargeSongs.h"
#include "benchmarks/support/Measure.h"
#include "tests/support/TemporaryFolder.h"

namespace velmora::benchmarks {

namespace {

constexpr int rounds = 15;
constexpr int loadRounds = 5;

/// The seconds of one list when a song of a million notes is copied and the copy dropped.
double copySecondsPerList(const Song& song) {
  constexpr int copies = 10000;
  constexpr int listsOfSong = 4;
  const double seconds = elapsed(CLOCK_THREAD_CPUTIME_ID, [&] {
    for (int count = 0; count < copies; ++count) {
      const Song copy = song;
      asm volatile("" : : "g"(&copy) : "memory");  // the compiler must take the copy for used
    }
  });
  return seconds / copies / listsOfSong;
}

/// The large song as its user edits it; each edit compiles once and tells how long that took.
class EditedSong {
 public:
  explicit EditedSong(Song song) : song_(std::move(song)) { compile(compiler_); }

  double compileWhole() {
    SnapshotCompiler fresh;
    return compile(fresh);
  }

  double changeVolume() {
    Track track = song_.tracks.back();
    track.volume = track.volume == 0.5F ? 0.6F : 0.5F;
    song_.update(track);
    return compile(compiler_);
  }

  double editNote() {
    Pattern pattern = song_.patterns[song_.patterns.size() / 2];
    const Note& note = pattern.notes[0];
    pattern.editNote(note.id, {.velocity = note.velocity ^ 1}, 0.25);
    song_.update(pattern);
    return compile(compiler_);
  }

  std::size_t eventCount() const {
    std::size_t count = 0;
    for (const auto& track : snapshot_->tracks()) count += track->events.size();
    return count;
  }

 private:
  double compile(SnapshotCompiler& compiler) {
    return elapsed(CLOCK_THREAD_CPUTIME_ID,
                   [&] { snapshot_ = compiler.compile(song_, PlaybackMode::song, {}); });
  }

  Song song_;
  SnapshotCompiler compiler_;
  std::shared_ptr<const RenderSnapshot> snapshot_;
};

void measureEdits(Report& report) {
  EditedSong edited(songWithMillionEvents());
  const Song millionNotes = songWithNotes(1 << 20);
  const auto [whole, volume, note, copy] = interleavedMedians(
      rounds, [&] { return edited.compileWhole(); }, [&] { return edited.changeVolume(); },
      [&] { return edited.editNote(); }, [&] { return copySecondsPerList(millionNotes); });

  const auto add = [&report, full = whole](const std::string& name, double seconds, double most) {
    report.add(name, Amount::seconds(seconds), Amount::seconds(full), Goal::figure(most));
  };
  add("copy of a million notes, a list (ref: compile)", copy, 1e-6);
  add("compile after a volume change (ref: compile)", volume, 1e-3);
  add("compile after a note edit (ref: compile)", note, 10e-3);
  add("compile, " + std::to_string(edited.eventCount()) + " events (ref: itself)", whole, 0.4);
}

void measureLoad(Report& report) {
  const testing::TemporaryFolder folder;
  const ProjectFiles files(folder.path());
  const UUID id = [&] {
    const Song song = longestSong();
    files.save(song);
    return song.id;
  }();
  const auto document = folder / id.text() / "song.json";
  const auto documentBytes = static_cast<double>(std::filesystem::file_size(document));

  std::vector<double> bytes;
  const auto [load, read] = interleavedMedians(
      loadRounds,
      [&] {
        const double before = startPeak();
        const double seconds = elapsed(CLOCK_MONOTONIC, [&] { files.load(id); });
        bytes.push_back(peakBytes() - before);
        return seconds;
      },
      [&] {
        return elapsed(CLOCK_MONOTONIC, [&] { platform::readFile(document, limits::longestDocumentBytes); });
      });
  report.add("load of " + Amount::bytes(documentBytes).text() + " (ref: reading the file)",
             Amount::seconds(load), Amount::seconds(read), Goal::figure(1.5));
  report.add("load, peak memory (ref: the document)", Amount::bytes(median(bytes)),
             Amount::bytes(documentBytes), Goal::ratio(8));
}

}  // namespace

void measureDocument(Report& report) {
  measureEdits(report);
  measureLoad(report);
}

}  // namespace velmora::benchmarks
