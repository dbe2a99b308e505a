#pragma once

#include "Velmora/Model/Observed.h"

namespace velmora {

/// The editor's part of a split workspace: one for all windows, kept from one start to the next.
class EditorFraction {
 public:
  static constexpr double standard = 0.55;

  EditorFraction();

  double operator()() const { return value_(); }
  const Observed<double>& value() const { return value_; }
  void store(double fraction);

 private:
  Shared<double> value_;
};

}  // namespace velmora
