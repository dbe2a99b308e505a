#include "Velmora/Studio/Parts/FileDropEvents.h"

#include <QFile>
#include <QList>
#include <QMimeData>
#include <QUrl>

namespace velmora {

std::optional<std::filesystem::path> importableFile(const AppModel& model, const QDropEvent& event) {
  const QList<QUrl> urls = event.mimeData()->urls();
  const bool isBusy = model.isAudioBusy() || model.isRecording() || model.isProjectBusy();
  if (isBusy || urls.size() != 1 || !urls.front().isLocalFile()) return {};
  return QFile::encodeName(urls.front().toLocalFile()).toStdString();
}

void acceptAsCopy(QDropEvent& event) {
  event.setDropAction(Qt::CopyAction);
  event.accept();
}

}  // namespace velmora
