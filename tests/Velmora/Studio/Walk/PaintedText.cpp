#include "tests/Velmora/Studio/Walk/PaintedText.h"

#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace velmora::testing {

namespace {

class TextEngine final : public QPaintEngine {
 public:
  TextEngine() : QPaintEngine(AllFeatures) {}
  std::vector<PaintedText> texts;

  bool begin(QPaintDevice*) override { return true; }
  bool end() override { return true; }
  Type type() const override { return User; }
  void updateState(const QPaintEngineState&) override {}
  void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}
  void drawPolygon(const QPointF*, int, PolygonDrawMode) override {}
  void drawPath(const QPainterPath&) override {}
  void drawTextItem(const QPointF& at, const QTextItem& item) override {
    const QRectF box(at.x(), at.y() - item.ascent(), item.width(), item.ascent() + item.descent());
    if (painter()->hasClipping() && !painter()->clipRegion().intersects(box.toAlignedRect())) return;
    const QRect place = state->transform().mapRect(box).toAlignedRect() & systemClip().boundingRect();
    QColor color = state->pen().color();
    color.setAlphaF(color.alphaF() * static_cast<float>(state->opacity()));
    if (place.isEmpty() || item.text().trimmed().isEmpty()) return;
    texts.push_back({item.text(), place, color, item.font().pixelSize()});
  }
};

class TextDevice final : public QPaintDevice {
 public:
  explicit TextDevice(QSize size) : size_(size) {}
  TextEngine engine;

  QPaintEngine* paintEngine() const override { return const_cast<TextEngine*>(&engine); }

 protected:
  int metric(PaintDeviceMetric what) const override {
    if (what == PdmWidth) return size_.width();
    if (what == PdmHeight) return size_.height();
    if (what == PdmDevicePixelRatio) return 1;
    if (what == PdmDevicePixelRatioScaled) return static_cast<int>(devicePixelRatioFScale());
    return what == PdmDepth ? 32 : 96;
  }

 private:
  const QSize size_;
};

double linear(float channel) {
  const double value = double{channel};
  return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color) {
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

QColor over(const QColor& color, const QColor& ground) {
  const float share = color.alphaF();
  const auto mixed = [share](float above, float below) { return above * share + below * (1 - share); };
  return QColor::fromRgbF(mixed(color.redF(), ground.redF()), mixed(color.greenF(), ground.greenF()),
                          mixed(color.blueF(), ground.blueF()));
}

}  // namespace

std::vector<PaintedText> paintedTexts(QWidget& widget) {
  TextDevice device(widget.size());
  widget.render(&device);
  return std::move(device.engine.texts);
}

double contrast(const QColor& color, const QColor& ground) {
  const double text = luminance(over(color, ground));
  const double behind = luminance(ground);
  return (std::max(text, behind) + 0.05) / (std::min(text, behind) + 0.05);
}

}  // namespace velmora::testing
