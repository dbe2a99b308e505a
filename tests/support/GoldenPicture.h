#pragma once

#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QWidget>
#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <vector>

namespace velmora::testing {

/// A widget's picture at scale 1. Text and symbols differ with the fonts' versions: `covered` hides them.
inline QImage pictureOf(QWidget& widget, const QRect& area, const std::vector<QRect>& covered = {}) {
  QImage picture(area.size(), QImage::Format_RGB32);
  picture.fill(Qt::black);
  widget.render(&picture, {}, area);
  QPainter painter(&picture);
  for (const QRect& each : covered) painter.fillRect(each.translated(-area.topLeft()), Qt::magenta);
  return picture;
}

/// The pixels that differ by more than `most` in a channel.
inline double shareOfDifferent(const QImage& a, const QImage& b, int most) {
  qint64 count = 0;
  for (int y = 0; y < a.height(); ++y) {
    for (int x = 0; x < a.width(); ++x) {
      const QRgb p = a.pixel(x, y), q = b.pixel(x, y);
      count += std::max({std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                         std::abs(qBlue(p) - qBlue(q))}) > most;
    }
  }
  return static_cast<double>(count) / (static_cast<double>(a.width()) * a.height());
}

/// Whether a picture is that of the folder `golden` beside the test. Of its pixels at most 0.02 % may differ
/// by more than 24 of 255 in a channel, so that no line and no grip is lost, and at most 0.5 % by more than
/// 4, so that no quiet ground is. One that differs is left beside the golden one as NAME.png.actual. With
/// VELMORA_WRITE_GOLDEN set, it becomes the golden one.
inline ::testing::AssertionResult isGolden(const QImage& picture, const QString& name,
                                           const char* test = __builtin_FILE()) {
  const QDir folder(QFileInfo(test).dir().filePath("golden"));
  const QString path = folder.filePath(name + ".png");
  if (std::getenv("VELMORA_WRITE_GOLDEN")) {
    folder.mkpath(".");
    picture.save(path);
  }
  const QImage golden = QImage(path).convertToFormat(picture.format());
  if (golden.size() == picture.size() && shareOfDifferent(picture, golden, 24) <= 0.0002 &&
      shareOfDifferent(picture, golden, 4) <= 0.005)
    return ::testing::AssertionSuccess();
  const QString actual = path + ".actual";
  picture.save(actual, "PNG");
  return ::testing::AssertionFailure() << "The picture differs: see " << actual.toStdString();
}

}  // namespace velmora::testing
