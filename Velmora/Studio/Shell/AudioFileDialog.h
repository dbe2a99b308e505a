#pragma once

#include <QFileDialog>
#include <filesystem>

namespace velmora {

/// Asks for the file of an import or an export, from the folder where the last such file was. Deletes itself
/// when closed.
class AudioFileDialog : public QFileDialog {
 public:
  enum class Purpose : bool { importing, exporting };
  AudioFileDialog(Purpose purpose, Options options, QWidget* parent);

  /// The chosen file once the dialog was accepted, otherwise empty. Remembers its folder.
  std::filesystem::path chosenFile() const;

  /// Offers this file, in its folder if it has one.
  void offer(const std::filesystem::path& file);

 private:
  void dress();

  const Purpose purpose_;
};

}  // namespace velmora
