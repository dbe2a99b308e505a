#include "Velmora/Studio/Arrangement/LoopEditorView.h"

#include <QPushButton>
#include <QVBoxLayout>

#include "Velmora/Studio/Arrangement/ShownLoop.h"
#include "Velmora/Theme/TextLabel.h"

namespace velmora {

LoopEditorView::LoopEditorView(AppModel& model, QWidget* parent)
    : QWidget(parent), model_(model), listener_([this] { showLoop(); }, model.song) {
  setObjectName("arrangement.loopEditor");
  setAccessibleName("Song Loop");
  setMinimumWidth(290);
  start_.setObjectName("arrangement.loop.start");
  end_.setObjectName("arrangement.loop.end");
  for (Stepper* stepper : {&start_, &end_})
    stepper->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  auto* const heading = new TextLabel("Song Loop", Theme::Text::title);
  auto* const whole = new QPushButton("Loop Whole Song");
  whole->setObjectName("arrangement.loop.whole");
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(20, 20, 20, 20);
  column->setSpacing(16);
  for (QWidget* part : {static_cast<QWidget*>(heading), static_cast<QWidget*>(&start_),
                        static_cast<QWidget*>(&end_), static_cast<QWidget*>(whole)})
    column->addWidget(part);
  start_.onChange = [this](double beat) { model_.setLoop(beat, shownLoop(model_.song()).endBeat); };
  end_.onChange = [this](double beat) { model_.setLoop(shownLoop(model_.song()).startBeat, beat); };
  connect(whole, &QPushButton::clicked, this, [this] { model_.clearLoop(); });
  showLoop();
}

void LoopEditorView::showLoop() {
  const LoopRange loop = shownLoop(model_.song());
  start_.show(loop.startBeat, "Start beat: " + beatText(loop.startBeat));
  end_.show(loop.endBeat, "End beat: " + beatText(loop.endBeat) + " (exclusive)");
}

}  // namespace velmora
