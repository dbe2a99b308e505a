#pragma once

#include <QColor>
#include <QPixmap>
#include <array>
#include <cstdint>
#include <optional>

namespace velmora {

/// What notes are put together from, painted once: round ends for each velocity and the names of the pitches.
/// All sizes are whole pixels of the device, so that nothing is blurred or scaled.
class NoteStamps {
 public:
  static constexpr double cornerRadius = 4;
  static constexpr double leftWidth = 128;  ///< most notes are no longer
  static constexpr double rightWidth = 8;   ///< holds the grip

  enum class Ink : std::uint8_t { dark, light };

  /// The ends of a note of one velocity, the left one to be cut at any place, and what goes between and on
  /// them.
  struct Body {
    QColor fill;
    Ink ink = Ink::dark;
    QPixmap left;
    QPixmap right;
  };

  NoteStamps() = default;
  NoteStamps(const QColor& trackColor, double rowHeight, double scale);

  bool isFor(const QColor& trackColor, double scale) const {
    return trackColor == trackColor_ && scale == scale_;
  }
  double height() const { return height_; }
  double onPixel(double place) const;

  const Body& body(int velocity);
  const QPixmap& name(int pitch, Ink ink);
  static QColor color(Ink ink);

 private:
  Body makeBody(int velocity) const;
  QPixmap makeEnd(const Body& body, double width, double shapeLeft) const;
  void addGrip(Body& body) const;
  QPixmap makeName(int pitch, Ink ink) const;
  QPixmap blank(double width) const;

  QColor trackColor_;
  double rowHeight_ = 18;
  double scale_ = 1;
  double height_ = 14;
  std::array<std::optional<Body>, 128> bodies_;
  std::array<std::array<QPixmap, 128>, 2> names_;
};

}  // namespace velmora
