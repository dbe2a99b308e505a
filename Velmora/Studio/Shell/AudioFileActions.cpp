#include "Velmora/Studio/Shell/AudioFileActions.h"

#include <system_error>
#include <utility>

namespace velmora {

AudioFileActions::AudioFileActions(AppModel& model, QFileDialog::Options dialogOptions,
                                   std::function<QWidget*()> windowInFront)
    : model_(model),
      dialogOptions_(dialogOptions),
      windowInFront_(std::move(windowInFront)),
      importListener_([this] { refreshImport(); }, model.showsAudioImport),
      exportListener_([this] { refreshExport(); }, model.showsExport) {}

void AudioFileActions::exportWAV() {
  if (!model_.showsExport()) model_.exportWAV();
}

/// A dialog that goes with its window is an answer, too.
AudioFileDialog* AudioFileActions::makeDialog(AudioFileDialog::Purpose purpose, const OnChoice& onChoice) {
  auto* dialog = new AudioFileDialog(purpose, dialogOptions_, windowInFront_());
  connect(dialog, &QDialog::finished, this, [this, dialog, onChoice] {
    disconnect(dialog, nullptr, this, nullptr);
    onChoice(dialog->chosenFile());
  });
  connect(dialog, &QObject::destroyed, this, [onChoice] { onChoice({}); });
  return dialog;
}

void AudioFileActions::refreshImport() {
  if (!model_.showsAudioImport() && importDialog_) importDialog_->close();
  if (!model_.showsAudioImport() || importDialog_) return;
  const auto import = [this](std::filesystem::path file) {
    importDialog_.clear();
    model_.showsAudioImport.set(false);
    if (!file.empty()) model_.importAudio(std::move(file), {});
  };
  importDialog_ = makeDialog(AudioFileDialog::Purpose::importing, import);
  importDialog_->open();
}

void AudioFileActions::refreshExport() {
  if (!model_.showsExport() && exportDialog_) exportDialog_->close();
  if (!model_.showsExport() || exportDialog_ || isSaving_()) return;
  askWhereTo(WAVDocument::fileName(model_.song().name));
}

void AudioFileActions::askWhereTo(const std::filesystem::path& offered, const QString& trouble) {
  const auto save = [this](const std::filesystem::path& chosen) { saveAs(chosen); };
  exportDialog_ = makeDialog(AudioFileDialog::Purpose::exporting, save);
  exportDialog_->offer(offered);
  if (!trouble.isEmpty()) exportDialog_->setWindowTitle(trouble);
  exportDialog_->open();
}

/// A file that only the completed name would replace is asked about by the dialog itself.
void AudioFileActions::saveAs(const std::filesystem::path& chosen) {
  exportDialog_.clear();
  if (chosen.empty() || !model_.exportURL()) return model_.showsExport.set(false);
  std::filesystem::path target = WAVDocument::target(chosen);
  std::error_code ignored;
  if (target != chosen && std::filesystem::exists(target, ignored)) return askWhereTo(target);
  save({*model_.exportURL()}, std::move(target));
}

QCoro::Task<> AudioFileActions::save(WAVDocument document, std::filesystem::path target) {
  const QPointer<AudioFileActions> self(this);
  isSaving_.set(true);
  auto saving = model_.saveCopy(document.url, target, "Export failed: ");
  const bool isSaved = co_await saving;
  if (!self) co_return;
  isSaving_.set(false);
  if (isSaved) {
    model_.showsExport.set(false);
  } else {
    askWhereTo(target, QString::fromStdString(model_.lastError().value_or("")));
  }
}

}  // namespace velmora
