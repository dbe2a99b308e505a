#include "benchmarks/Views.h"

#include <QTemporaryDir>

#include "Velmora/Theme/Theme.h"

namespace velmora::benchmarks {

QApplication& offscreenApplication() {
  static const QTemporaryDir settings;
  static int count = 1;
  static char name[] = "GoalsBenchmark";
  static char* arguments[] = {name, nullptr};
  // For ever, as what is static in Qt may go before it.
  static QApplication* const application = [] {
    qputenv("XDG_CONFIG_HOME", settings.path().toUtf8());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    auto* const made = new QApplication(count, arguments);
    Theme::install();
    return made;
  }();
  return *application;
}

void open(QWidget& view, QSize size) {
  view.resize(size);
  view.show();
  QCoreApplication::processEvents();
}

void addFigure(Report& report, const std::string& name, Amount figure, double goal) {
  report.add(name, figure, Amount::seconds(goal), Goal::figure(goal));
}

}  // namespace velmora::benchmarks
