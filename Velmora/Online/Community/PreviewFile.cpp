#include "Velmora/Online/Community/PreviewFile.h"

#include <QFile>
#include <system_error>

#include "Platform/Files/FileError.h"
#include "Platform/Files/Folders.h"

namespace velmora {

PreviewFile::PreviewFile() : path_(platform::temporaryFile("wav")) {
  QFile file(path_);
  if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly, QFile::ReadOwner | QFile::WriteOwner))
    throw platform::FileError(path_, file.errorString().toStdString());
}

PreviewFile::~PreviewFile() {
  std::error_code ignored;
  std::filesystem::remove(path_, ignored);
}

}  // namespace velmora
