#include "Velmora/Studio/Arrangement/EmptyArrangement.h"

#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

#include "Velmora/Studio/Arrangement/AddTrackMenu.h"
#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

constexpr int symbolSize = 48;

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

QLabel* makeLabel(const QString& text, Theme::Text role, QPalette::ColorRole color) {
  auto* const label = new QLabel(text);
  label->setFont(Theme::font(role));
  label->setForegroundRole(color);
  label->setAlignment(Qt::AlignCenter);
  return label;
}

}  // namespace

EmptyArrangement::EmptyArrangement(AppModel& model, QWidget* parent) : QWidget(parent) {
  setObjectName("arrangement.empty");
  auto* const symbol = new QLabel;
  symbol->setPixmap(Theme::symbolIcon("music.note.list", Theme::secondary, symbolSize)
                        .pixmap(QSize(symbolSize, symbolSize), devicePixelRatioF()));
  symbol->setAlignment(Qt::AlignCenter);
  auto* const column = new QVBoxLayout(this);
  column->setSpacing(8);
  column->addStretch(1);
  column->addWidget(symbol);
  column->addWidget(makeLabel("Start a New Beat", Theme::Text::title, QPalette::WindowText));
  column->addWidget(
      makeLabel("Add drums, a synth, or an audio track.", Theme::Text::caption, QPalette::PlaceholderText));
  column->addSpacing(8);
  column->addWidget(new FramedMenu(model), 0, Qt::AlignHCenter);
  column->addStretch(1);
}

void EmptyArrangement::paintEvent(QPaintEvent*) { QPainter(this).fillRect(rect(), Theme::background); }

}  // namespace velmora
