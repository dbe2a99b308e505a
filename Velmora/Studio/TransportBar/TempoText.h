#pragma once

#include <QString>
#include <optional>

namespace velmora {

/// A tempo as people read and type it.
struct TempoText {
  /// No fraction digits.
  static QString shown(double bpm);

  /// Takes a decimal comma and blanks at the ends; empty for anything that isn't wholly a finite number.
  static std::optional<double> parsed(QString text);
};

}  // namespace velmora
