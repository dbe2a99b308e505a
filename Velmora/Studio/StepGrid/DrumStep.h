#pragma once

#include <QString>
#include <cstdint>
#include <optional>

#include "VelmoraCore/Song/DrumSound.h"

namespace velmora {

/// One step of one sound and what it is called.
struct DrumStep {
  DrumSound sound = DrumSound::kick;
  int step = 0;                            ///< from the pattern's start
  std::optional<std::uint8_t> velocity{};  ///< empty while the step is off

  QString label() const;       ///< "Kick, bar 1, step 1"
  QString value() const;       ///< "On, velocity 100" or "Off"
  QString help() const;        ///< "Kick · Step 1 · Velocity 100"
  QString identifier() const;  ///< "step.36.0"
  static QString hint();

  bool operator==(const DrumStep&) const = default;
};

}  // namespace velmora
