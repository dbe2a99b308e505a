#include "VelmoraCore/Instruments/VoiceLanes.h"

#include <limits>

namespace velmora {

namespace {
constexpr float never = std::numeric_limits<float>::infinity();
}

EnvelopeLanes::EnvelopeLanes() { setShape(ADSR()); }

void EnvelopeLanes::setShape(const ADSR& newShape) noexcept {
  shape = newShape;
  for (int voice = 0; voice < voiceCount; ++voice) enter(voice, stage[static_cast<std::size_t>(voice)]);
}

void EnvelopeLanes::enter(int voice, ADSR::Stage newStage) noexcept {
  const auto lane = static_cast<std::size_t>(voice);
  const auto run = [&](const ADSR::Segment& segment, float upper, float lower) {
    base[lane] = segment.base;
    coefficient[lane] = segment.coefficient;
    upperBound[lane] = upper;
    lowerBound[lane] = lower;
  };
  stage[lane] = newStage;
  isSustaining[lane] = newStage == ADSR::Stage::sustain ? -1 : 0;
  switch (newStage) {
    case ADSR::Stage::attack:
      return run(shape.attackSegment(), 1, -never);
    case ADSR::Stage::decay:
      return run(shape.decaySegment(), never, shape.sustainLevel());
    case ADSR::Stage::release:
      return run(shape.releaseSegment(), never, 0);
    case ADSR::Stage::idle:
    case ADSR::Stage::sustain:
      return run({}, never, -never);
  }
}

void EnvelopeLanes::start(int voice) noexcept {
  level[static_cast<std::size_t>(voice)] = 0;
  enter(voice, ADSR::Stage::attack);
}

void EnvelopeLanes::noteOff(int voice) noexcept {
  if (!isIdle(voice)) enter(voice, ADSR::Stage::release);
}

void EnvelopeLanes::silence(int voice) noexcept {
  level[static_cast<std::size_t>(voice)] = 0;
  enter(voice, ADSR::Stage::idle);
}

void EnvelopeLanes::crossBound(int voice) noexcept {
  const auto lane = static_cast<std::size_t>(voice);
  switch (stage[lane]) {
    case ADSR::Stage::attack:
      level[lane] = 1;
      return enter(voice, ADSR::Stage::decay);
    case ADSR::Stage::decay:
      level[lane] = shape.sustainLevel();
      return enter(voice, shape.sustainLevel() > 0 ? ADSR::Stage::sustain : ADSR::Stage::idle);
    case ADSR::Stage::release:
      return silence(voice);
    case ADSR::Stage::idle:
    case ADSR::Stage::sustain:
      return;
  }
}

}  // namespace velmora
