#include "Velmora/Studio/StepGrid/DrumStep.h"

#include "Velmora/Studio/StepGrid/StepGridGeometry.h"

namespace velmora {
namespace {

constexpr int stepsPerBar = StepPages::stepsPerPage;

QString soundName(DrumSound sound) {
  const std::string_view name = label(sound);
  return QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
}

}  // namespace

QString DrumStep::label() const {
  return QString("%1, bar %2, step %3")
      .arg(soundName(sound))
      .arg(step / stepsPerBar + 1)
      .arg(step % stepsPerBar + 1);
}

QString DrumStep::value() const { return velocity ? QString("On, velocity %1").arg(*velocity) : "Off"; }

QString DrumStep::help() const {
  const QString text = QString("%1 · Step %2").arg(soundName(sound)).arg(step % stepsPerBar + 1);
  return velocity ? text + QString(" · Velocity %1").arg(*velocity) : text;
}

QString DrumStep::identifier() const { return QString("step.%1.%2").arg(pitch(sound)).arg(step); }

QString DrumStep::hint() { return "Activate to toggle. Adjust to change velocity."; }

}  // namespace velmora
