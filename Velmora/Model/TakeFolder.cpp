#include "Velmora/Model/TakeFolder.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <system_error>

#include "Platform/Files/FileError.h"
#include "Platform/Files/Files.h"
#include "Platform/Files/Folders.h"

namespace velmora {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t longestNote = 65536;  // bytes

fs::path noteOf(fs::path take) { return take.replace_extension(".take"); }

bool isTake(const fs::path& path) { return path.extension() == ".caf" && UUID::parse(path.stem().string()); }

QJsonObject readNote(const fs::path& note) {
  if (!platform::isOwnFile(note)) return {};
  try {
    return QJsonDocument::fromJson(QByteArray::fromStdString(platform::readFile(note, longestNote))).object();
  } catch (const platform::FileError&) {
    return {};
  }
}

QString text(const UUID& id) { return QString::fromStdString(id.text()); }

std::optional<UUID> id(const QJsonValue& value) { return UUID::parse(value.toString().toStdString()); }

}  // namespace

fs::path TakeFolder::newTake() {
  return platform::lastingTemporaryFolder() / (UUID::random().text() + ".caf");
}

void TakeFolder::note(const RecordingContext& take) const {
  QJsonObject note{{"projects", QString::fromStdString(projects_.string())},
                   {"trackID", text(take.trackID)},
                   {"beat", take.beat}};
  if (take.importedClipID) note["importedClipID"] = text(*take.importedClipID);
  platform::atomicWrite(noteOf(take.url), QJsonDocument(note).toJson().toStdString());
}

std::error_code TakeFolder::remove(const RecordingContext& take) {
  std::error_code code, ignored;
  fs::remove(take.url, code);
  if (!code) fs::remove(noteOf(take.url), ignored);
  return code;
}

std::optional<RecordingContext> TakeFolder::leftTake() const {
  std::optional<RecordingContext> latest;
  fs::file_time_type latestTime;
  std::error_code ended;
  for (fs::directory_iterator entry(platform::lastingTemporaryFolder(), ended), end; entry != end;
       entry.increment(ended)) {
    std::error_code isGone;
    const auto time = isTake(entry->path()) ? entry->last_write_time(isGone) : fs::file_time_type::min();
    if (!isTake(entry->path()) || isGone || (latest && time <= latestTime)) continue;
    if (auto take = readTake(entry->path())) {
      latest = std::move(take);
      latestTime = time;
    }
  }
  return latest;
}

std::optional<RecordingContext> TakeFolder::readTake(const fs::path& url) const {
  if (!platform::isOwnFile(url)) return {};  // anybody may put files into a temporary folder
  const QJsonObject note = readNote(noteOf(url));
  const bool isForeign = note.contains("projects") && note["projects"].toString().toStdString() != projects_;
  if (isForeign) return {};
  return RecordingContext{.url = url,
                          .trackID = id(note["trackID"]).value_or(UUID()),
                          .beat = note["beat"].toDouble(),
                          .importedClipID = id(note["importedClipID"])};
}

}  // namespace velmora
