#include "Velmora/Studio/Arrangement/EmptyArrangement.h"

#include <QPainter>
#include <QVBoxLayout>

#include "Velmora/Studio/Arrangement/AddTrackMenu.h"
#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

/// The button in a frame of its own, so that it is seen as one.
class FramedMenu final : public QWidget {
 public:
  explicit FramedMenu(AppModel& model) {
    setFixedWidth(180);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* const menu = new AddTrackMenu(model);
    menu->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    layout->addWidget(menu);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    paintPanel(painter, rect(), 8, Theme::raised, Theme::line);
  }
};

}  // namespace

EmptyArrangement::EmptyArrangement(AppModel& model, QWidget* parent)
    : Placeholder({"music.note.list", "Start a New Beat", "Add drums, a synth, or an audio track."},
                  new FramedMenu(model), parent) {
  setObjectName("arrangement.empty");
}

void EmptyArrangement::paintEvent(QPaintEvent*) { QPainter(this).fillRect(rect(), Theme::background); }

}  // namespace velmora
