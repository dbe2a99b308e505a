#pragma once

#include <QApplication>
#include <QWidget>
#include <ctime>
#include <string>
#include <vector>

#include "benchmarks/Report.h"
#include "benchmarks/support/Measure.h"

/// What the groups that measure views share.
namespace velmora::benchmarks {

constexpr double frameAtSixty = 1.0 / 60;

/// The process's one application, in the studio's look, without a screen and with settings of its own.
QApplication& offscreenApplication();

/// On the screen, all painted.
void open(QWidget& view, QSize size);

/// What each step takes until all that it changed is painted, in seconds.
template <class Step>
std::vector<double> stepTimes(int count, const Step& step) {
  std::vector<double> times;
  times.reserve(static_cast<std::size_t>(count));
  for (int frame = 0; frame < count; ++frame) {
    times.push_back(elapsed(CLOCK_MONOTONIC, [&] {
      step(frame);
      QCoreApplication::processEvents();
    }));
  }
  return times;
}

/// A line for a figure with a goal in seconds.
void addFigure(Report& report, const std::string& name, Amount figure, double goal);

}  // namespace velmora::benchmarks
