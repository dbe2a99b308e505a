#pragma once

#include <QHash>
#include <QPainterPath>
#include <QString>
#include <cstdint>
#include <string_view>
#include <utility>

namespace velmora {

/// A symbol of the interface: its name, its glyph in the icon font and a character that any font has.
struct Symbol {
  enum class Facing : std::uint8_t { asDrawn, mirrored };

  std::u16string_view name{};
  char16_t glyph = 0;
  char16_t fallback = 0;
  Facing facing = Facing::asDrawn;

  /// Null for an unknown name.
  static const Symbol* named(std::u16string_view name);
};

/// Outlines of symbols, taken from one font family and kept. Main thread.
class Symbols {
 public:
  /// All outlines are drawn in a square of this many units, most of them 2 or 3 units inside it.
  static constexpr double box = 24;

  /// Of a family that isn't there, symbols come as plain shapes and characters of the text font.
  explicit Symbols(QString family = QStringLiteral("Material Icons")) : family_(std::move(family)) {}

  /// Empty for an unknown name.
  const QPainterPath& outline(const QString& name);

 private:
  QPainterPath make(const Symbol& symbol);
  QPainterPath glyph(const Symbol& symbol);

  const QString family_;
  QHash<QString, QPainterPath> outlines_;
};

}  // namespace velmora
