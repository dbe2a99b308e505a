#include "Velmora/Theme/Symbols.h"

#include <QFont>
#include <QFontDatabase>
#include <QRawFont>
#include <QTransform>
#include <algorithm>
#include <iterator>

#include "Velmora/Theme/SymbolShapes.h"

namespace velmora {
namespace {

constexpr auto mirrored = Symbol::Facing::mirrored;

// In the order of their names: they are found by halving.
constexpr Symbol symbols[] = {
    {u"arrow.down.circle.fill", 0xF000, u'↓'},
    {u"arrow.left.to.line", 0xE31C, u'⇤', mirrored},
    {u"arrow.right.to.line", 0xE31C, u'⇥'},
    {u"backward.end.fill", 0xE045, u'«'},
    {u"checkmark", 0xE5CA, u'✓'},
    {u"checkmark.circle.fill", 0xE86C, u'✓'},
    {u"chevron.down", 0xE5CF, u'▾'},
    {u"chevron.left", 0xE5CB, u'‹'},
    {u"chevron.right", 0xE5CC, u'›'},
    {u"chevron.up", 0xE5CE, u'▴'},
    {u"circle.grid.3x3.fill", 0xE5C3, u'⁘'},
    {u"ellipsis.circle", 0xE5D3, u'…'},
    {u"exclamationmark.triangle.fill", 0xE002, u'⚠'},
    {u"folder", 0xE2C7, u'▭'},
    {u"info.circle", 0xE88F, u'ℹ'},
    {u"mic.fill", 0xE029, u'●'},
    {u"minus", 0xE15B, u'−'},
    {u"minus.magnifyingglass", 0xE900, u'−'},
    {u"music.note.list", 0xE03D, u'♫'},
    {u"pause.fill", 0xE034, u'‖'},
    {u"pencil", 0xE3C9, u'✎'},
    {u"person.2", 0xE7FC, u'☺'},
    {u"person.crop.circle", 0xE853, u'☺'},
    {u"pianokeys", 0xE521, u'♪'},
    {u"play.circle", 0xE039, u'▸'},
    {u"play.fill", 0xE037, u'▸'},
    {u"plus", 0xE145, u'+'},
    {u"plus.magnifyingglass", 0xE8FF, u'+'},
    {u"plus.rectangle", 0xE146, u'+'},
    {u"plus.square.on.square", 0xE02E, u'❐'},
    {u"record.circle", 0xE837, u'◉'},
    {u"record.circle.fill", 0xE061, u'●'},
    {u"rectangle.bottomthird.inset.filled", 0xE06C, u'▂'},
    {u"rectangle.portrait.and.arrow.right", 0xE9BA, u'→'},
    {u"rectangle.split.3x1", 0xE8F3, u'▥'},
    {u"repeat", 0xE040, u'↻'},
    {u"slider.horizontal.3", 0xE429, u'≡'},
    {u"speaker.wave.2.fill", 0xE050, u'♪'},
    {u"square.and.arrow.down", 0xE171, u'↓'},
    {u"square.and.arrow.down.on.square", 0xE161, u'⇓'},
    {u"square.and.arrow.up", 0xE6B8, u'↑'},
    {u"square.grid.4x3.fill", 0xE3EC, u'▦'},
    {u"stop.circle.fill", 0xEF71, u'■'},
    {u"stop.fill", 0xE047, u'■'},
    {u"trash", 0xE872, u'⌫'},
    {u"waveform", 0xE1B8, u'∿'},
    {u"xmark", 0xE5CD, u'×'},
    {u"xmark.circle", 0xE888, u'×'},
    {u"xmark.circle.fill", 0xE5C9, u'×'},
};

constexpr double characterSize = 20;

static_assert(std::ranges::is_sorted(symbols, {}, &Symbol::name));

QPainterPath inFacing(Symbol::Facing facing, const QPainterPath& path) {
  return facing == mirrored ? QTransform(-1, 0, 0, 1, Symbols::box, 0).map(path) : path;
}

QPainterPath character(char16_t fallback) {
  QFont font;
  font.setPixelSize(static_cast<int>(characterSize));
  QPainterPath path;
  path.addText(0, 0, font, QString(QChar(fallback)));
  const QRectF bounds = path.boundingRect();
  const double scale = std::min(1.0, characterSize / std::max(bounds.width(), bounds.height()));
  const QTransform toMiddle = QTransform::fromTranslate(Symbols::box / 2, Symbols::box / 2);
  return (QTransform::fromTranslate(-bounds.center().x(), -bounds.center().y()) *
          QTransform::fromScale(scale, scale) * toMiddle)
      .map(path);
}

}  // namespace

const Symbol* Symbol::named(std::u16string_view name) {
  const auto* const found = std::ranges::lower_bound(symbols, name, {}, &Symbol::name);
  return found != std::end(symbols) && found->name == name ? found : nullptr;
}

const QPainterPath& Symbols::outline(const QString& name) {
  const auto known = outlines_.constFind(name);
  if (known != outlines_.constEnd()) return *known;
  const Symbol* const symbol = Symbol::named(name.toStdU16String());
  return *outlines_.insert(name, symbol ? make(*symbol) : QPainterPath());
}

QPainterPath Symbols::make(const Symbol& symbol) {
  QPainterPath path = glyph(symbol);
  if (path.isEmpty()) path = symbolShape(symbol.name);
  return path.isEmpty() ? character(symbol.fallback) : path;
}

QPainterPath Symbols::glyph(const Symbol& symbol) {
  if (!QFontDatabase::hasFamily(family_)) return {};
  constexpr double precision = 10;  // outlines come in 64ths of a pixel
  QFont font(family_);
  font.setPixelSize(static_cast<int>(box * precision));
  font.setHintingPreference(QFont::PreferNoHinting);
  const QRawFont raw = QRawFont::fromFont(font);
  const auto indexes = raw.glyphIndexesForString(QString(QChar(symbol.glyph)));
  if (indexes.isEmpty() || indexes.front() == 0) return {};
  const QTransform toBox = QTransform::fromTranslate(0, box).scale(1 / precision, 1 / precision);
  return inFacing(symbol.facing, toBox.map(raw.pathForGlyph(indexes.front())));
}

}  // namespace velmora
