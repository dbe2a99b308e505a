#include "Velmora/Studio/Shell/EditorFraction.h"

#include <QSettings>
#include <QString>
#include <cmath>

namespace velmora {

namespace {

QSettings settings() { return QSettings("Orrin", "Velmora"); }
const QString key = "editorFraction";

double stored() {
  bool isNumber = false;
  const double fraction = settings().value(key, EditorFraction::standard).toDouble(&isNumber);
  return isNumber && std::isfinite(fraction) ? fraction : EditorFraction::standard;
}

}  // namespace

EditorFraction::EditorFraction() : value_(stored()) {}

void EditorFraction::store(double fraction) {
  value_.set(fraction);
  settings().setValue(key, fraction);
}

}  // namespace velmora
