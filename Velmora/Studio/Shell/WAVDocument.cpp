#include "Velmora/Studio/Shell/WAVDocument.h"

#include <QFile>
#include <QString>

namespace velmora {

namespace {

const QString extension = ".wav";
constexpr qsizetype longestName = 255;  // bytes, of file systems

}  // namespace

std::filesystem::path WAVDocument::fileName(const std::string& songName) {
  QString name = QString::fromStdString(songName);
  name.replace('/', '-');
  while (name.toUtf8().size() + extension.size() > longestName)
    name.chop(name.back().isLowSurrogate() ? 2 : 1);
  return QFile::encodeName(name + extension).toStdString();
}

std::filesystem::path WAVDocument::target(std::filesystem::path chosen) {
  const QString given = QString::fromStdString(chosen.extension().string());
  if (given.compare(extension, Qt::CaseInsensitive) != 0) chosen += extension.toStdString();
  return chosen;
}

}  // namespace velmora
