#pragma once

#include <QCoroTask>
#include <QObject>
#include <QPointer>
#include <filesystem>
#include <functional>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Studio/Shell/AudioFileDialog.h"
#include "Velmora/Studio/Shell/WAVDocument.h"

namespace velmora {

/// How audio files come into the project and leave it, for all windows: asks for the file to import while the
/// model's `showsAudioImport`, and for the place of an exported one while `showsExport`. That stays true
/// until the file is safe in its place or the user doesn't want it: after a failure the question comes back.
class AudioFileActions : public QObject {
 public:
  /// The dialogs stand over the window in front, which there always is.
  AudioFileActions(AppModel& model, QFileDialog::Options dialogOptions,
                   std::function<QWidget*()> windowInFront);

  /// Starts an export, unless the last one isn't dealt with yet.
  void exportWAV();

  /// The exported file is being copied to its place.
  const Observed<bool>& isSaving() const { return isSaving_; }

 private:
  /// Empty if the user doesn't want any file.
  using OnChoice = std::function<void(std::filesystem::path chosen)>;
  AudioFileDialog* makeDialog(AudioFileDialog::Purpose purpose, const OnChoice& onChoice);

  void refreshImport();
  void refreshExport();
  void askWhereTo(const std::filesystem::path& offered, const QString& trouble = {});
  void saveAs(const std::filesystem::path& chosen);
  QCoro::Task<> save(WAVDocument document, std::filesystem::path target);

  AppModel& model_;
  const QFileDialog::Options dialogOptions_;
  const std::function<QWidget*()> windowInFront_;
  Shared<bool> isSaving_;
  QPointer<AudioFileDialog> importDialog_;
  QPointer<AudioFileDialog> exportDialog_;
  ChangeListener importListener_;
  ChangeListener exportListener_;
};

}  // namespace velmora
