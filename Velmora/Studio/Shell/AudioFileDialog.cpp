#include "Velmora/Studio/Shell/AudioFileDialog.h"

#include <QDialogButtonBox>
#include <QFileIconProvider>
#include <QSettings>
#include <QStandardPaths>
#include <QToolButton>
#include <utility>

#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

struct Question {
  const char* id;
  const char* title;
  const char* folderKey;
  QFileDialog::AcceptMode mode;
  QFileDialog::FileMode files;
};
constexpr Question questions[] = {
    {"audioImport", "Import Audio", "importFolder", QFileDialog::AcceptOpen, QFileDialog::ExistingFile},
    {"wavExport", "Export WAV", "exportFolder", QFileDialog::AcceptSave, QFileDialog::AnyFile},
};

const Question& questionOf(AudioFileDialog::Purpose purpose) {
  return questions[static_cast<std::size_t>(purpose)];
}

/// Some desktops' own dialogs tell capital letters from small ones.
QString patterns(const QStringList& extensions) {
  QStringList patterns;
  for (const QString& extension : extensions) patterns << "*." + extension << "*." + extension.toUpper();
  return patterns.join(' ');
}

QStringList filters(AudioFileDialog::Purpose purpose) {
  if (purpose == AudioFileDialog::Purpose::exporting) return {"WAV audio (" + patterns({"wav"}) + ")"};
  const QString known = patterns({"wav", "wave", "aif", "aiff", "aifc", "caf", "flac", "ogg", "oga", "opus",
                                  "mp3", "w64", "rf64", "au"});
  return {"Audio files (" + known + ")", "All files (*)"};
}

QString folder(const char* key) {
  const QString music = QStandardPaths::writableLocation(QStandardPaths::MusicLocation);
  const QString last = QSettings("Orrin", "Velmora").value(key, music).toString();
  return QFileInfo(last).isDir() ? last : QDir::homePath();
}

/// The studio's symbols for what lies on the disk. Asked by the dialog's own thread, too, which may outlast
/// the dialog's parts.
class SymbolProvider final : public QFileIconProvider {
 public:
  QIcon icon(IconType type) const override { return type == File ? file_ : folder_; }
  QIcon icon(const QFileInfo& info) const override { return info.isDir() ? folder_ : file_; }

 private:
  const QIcon folder_ = Theme::symbolIcon("folder", Theme::secondary);
  const QIcon file_ = Theme::symbolIcon("waveform", Theme::secondary);
};

SymbolProvider& symbolProvider() {
  static SymbolProvider provider;
  return provider;
}

/// What Qt's dialog has of symbols, by the names of its parts. The desktop's own dialogs have no such parts.
constexpr std::pair<const char*, const char*> partSymbols[] = {
    {"backButton", "chevron.left"},
    {"forwardButton", "chevron.right"},
    {"toParentButton", "chevron.up"},
    {"newFolderButton", "plus"},
};

std::filesystem::path pathOf(const QString& file) { return QFile::encodeName(file).toStdString(); }

}  // namespace

AudioFileDialog::AudioFileDialog(Purpose purpose, Options options, QWidget* parent)
    : QFileDialog(parent), purpose_(purpose) {
  const Question& question = questionOf(purpose);
  setOptions(options | HideNameFilterDetails);
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowModality(Qt::WindowModal);
  setObjectName(question.id);
  setWindowTitle(question.title);
  setAcceptMode(question.mode);
  setFileMode(question.files);
  setViewMode(List);
  setNameFilters(filters(purpose));
  setDirectory(folder(question.folderKey));
  dress();
  if (parent) resize(QSize(640, 440).boundedTo(parent->size()));
}

/// The list is the only view: screen readers can't cope with the table as long as nothing is chosen in it.
void AudioFileDialog::dress() {
  setIconProvider(&symbolProvider());
  for (const auto& [part, symbol] : partSymbols) {
    if (auto* button = findChild<QToolButton*>(part)) button->setIcon(Theme::symbolIcon(symbol));
  }
  for (const char* part : {"listModeButton", "detailModeButton"}) {
    if (auto* button = findChild<QToolButton*>(part)) button->hide();
  }
  auto* answers = findChild<QDialogButtonBox*>("buttonBox");
  if (!answers) return;
  for (QAbstractButton* button : answers->buttons()) button->setIcon({});
}

std::filesystem::path AudioFileDialog::chosenFile() const {
  const QString file = selectedFiles().value(0);
  if (result() != Accepted || file.isEmpty()) return {};
  QSettings("Orrin", "Velmora").setValue(questionOf(purpose_).folderKey, QFileInfo(file).absolutePath());
  return pathOf(file);
}

void AudioFileDialog::offer(const std::filesystem::path& file) {
  const QFileInfo info(QFile::decodeName(file.c_str()));
  if (file.has_parent_path()) setDirectory(info.absolutePath());
  selectFile(info.fileName());
}

}  // namespace velmora
