#include <QImage>
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "Waveform/Peaks.h"
#include "Waveform/Waveform.h"

namespace waveform {
namespace {

using Values = std::vector<float>;

rc::Gen<Values> someValues() {
  return rc::gen::container<Values>(
      rc::gen::map(rc::gen::inRange(-1000, 1001), [](int n) { return static_cast<float>(n) / 1000; }));
}

auto buffer(Values values) { return std::make_shared<const SampleBuffer>(SampleBuffer{std::move(values)}); }

Renderer rendererOf(Values values) {
  Renderer renderer;
  const auto count = static_cast<std::int64_t>(values.size());
  renderer.set(buffer(std::move(values)), 0, count);
  return renderer;
}

TEST(PeaksTest, TellsTheLargestMagnitudeOfEachBin) {
  const auto overview = [](Values frames, std::size_t count) {
    return peaks({std::move(frames), 44100}, count);
  };
  EXPECT_EQ(overview({}, 2048), Values());
  EXPECT_EQ(overview({0.5F, -0.75F, 0, 0.25F, -1}, 2), (Values{-0.75F, 0.75F, -0.25F, 0.25F, -1, 1}));
  EXPECT_EQ(overview({0.5F, -0.75F}, 2048), (Values{-0.5F, 0.5F, -0.75F, 0.75F}));
  EXPECT_EQ(overview({0.5F, -0.75F}, 0), (Values{-0.75F, 0.75F}));
  const std::pair<std::size_t, std::size_t> sizes[] = {
      {1000, 2000}, {2048, 4096}, {4095, 8190}, {4097, 2 * 2049}, {26460000, 2 * 2049}};
  for (const auto& [frames, floats] : sizes) EXPECT_EQ(overview(Values(frames), 2048).size(), floats);
  Values last(4097);
  last.back() = -0.5F;
  EXPECT_EQ(overview(last, 2048).back(), 0.5F);
}

RC_GTEST_PROP(RendererTest, EveryLevelHoldsThePlainMinimaAndMaxima, ()) {
  const Values values = *someValues();
  const Renderer renderer = rendererOf(values);
  const auto& smallest = renderer.minBuffers();
  RC_ASSERT(smallest.size() == renderer.maxBuffers().size());
  RC_ASSERT(smallest.empty() == (values.size() < 3));
  for (std::size_t level = 0; level < smallest.size(); ++level) {
    const std::size_t width = std::size_t{1} << level;
    RC_ASSERT(smallest[level].size() == values.size() / width);
    RC_ASSERT((smallest[level].size() <= 5) == (level + 1 == smallest.size()));
    for (std::size_t bin = 0; bin < smallest[level].size(); ++bin) {
      const auto first = values.begin() + static_cast<std::ptrdiff_t>(bin * width);
      const auto [least, most] = std::minmax_element(first, first + static_cast<std::ptrdiff_t>(width));
      RC_ASSERT(smallest[level][bin] == *least);
      RC_ASSERT(renderer.maxBuffers()[level][bin] == *most);
    }
  }
}

TEST(RendererTest, ChoosesTheFinestLevelWithFewerBinsThanPixels) {
  const Renderer renderer = rendererOf(Values(4096));  // levels of 4096, 2048, ... 8, 4
  const std::pair<double, std::size_t> rows[] = {{1e9, 0},  {4097, 0}, {4096, 1}, {2049, 1}, {2048, 2},
                                                 {1000, 3}, {9, 9},    {5, 10},   {4, 10},   {0.1, 10}};
  for (const auto& [virtualWidth, level] : rows)
    EXPECT_EQ(renderer.level(virtualWidth), level) << virtualWidth;
  EXPECT_FALSE(rendererOf({0.5F, -0.5F}).level(100));
}

TEST(RendererTest, DrawsEachBinInItsColumns) {
  using Bars = std::vector<QRect>;
  Renderer renderer = rendererOf({-1, 1, -0.5F, 0.5F, 0, 0, 0.5F, 1});  // levels of 8 and 4
  EXPECT_EQ(renderer.bars({8, 8}), (Bars{{0, 0, 2, 8}, {2, 2, 2, 4}, {4, 2, 2, 2}, {6, 0, 2, 2}}));
  EXPECT_EQ(renderer.bars({5, 4}).size(), 4U);
  const auto samples = renderer.samples();
  renderer.set(samples, 4, 4);
  EXPECT_EQ(renderer.bars({4, 8}), (Bars{{0, 2, 2, 2}, {2, 0, 2, 2}}));
  const std::tuple<std::int64_t, std::int64_t, QSize> nothing[] = {
      {0, 0, {8, 8}}, {0, -1, {8, 8}}, {8, 4, {8, 8}}, {0, 8, {0, 8}}, {0, 8, {8, 0}}};
  for (const auto& [start, length, view] : nothing) {
    renderer.set(samples, start, length);
    EXPECT_EQ(renderer.bars(view), Bars()) << start << ' ' << length << ' ' << view.width();
  }
  EXPECT_EQ(rendererOf({-1, 1}).bars({8, 8}), Bars());
}

RC_GTEST_PROP(RendererTest, BarsLieInTheViewSideBySideAndNeverBreakOff, ()) {
  const Values values = *someValues();
  Renderer renderer;
  renderer.set(buffer(values), *rc::gen::inRange(-5, 200), *rc::gen::inRange(-5, 200));
  const QSize view(*rc::gen::inRange(1, 300), *rc::gen::inRange(1, 100));
  const std::vector<QRect> bars = renderer.bars(view);
  int right = 0;
  for (std::size_t n = 0; n < bars.size(); ++n) {
    RC_ASSERT(QRect(QPoint(), view).contains(bars[n]));
    RC_ASSERT(bars[n].left() == right);
    right = bars[n].right() + 1;
    if (n + 1 == bars.size()) break;
    RC_ASSERT(bars[n].top() <= bars[n + 1].bottom() + 1);
    RC_ASSERT(bars[n + 1].top() <= bars[n].bottom() + 1);
  }
  RC_ASSERT(bars.empty() || right == view.width());
}

TEST(WaveformTest, FillsWholePixelsAtEveryScaleAndBuildsOncePerBuffer) {
  for (const int scale : {1, 2}) {
    Waveform view;
    view.resize(100, 40);
    const auto samples = buffer({-1, 1, -0.5F, 0.5F, 0, 0, 0.25F, 0.25F});
    view.set(samples, 0, 8, {{1, 0, 0, 1}});
    const float* const built = view.renderer().minBuffers()[0].data();
    view.set(samples, 0, 8, {{0, 1, 0, 1}});
    EXPECT_EQ(view.renderer().minBuffers()[0].data(), built);
    QImage image(view.size() * scale, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::black);
    view.render(&image, {}, {}, {});
    int filled = 0, other = 0;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) {
        const QColor seen = image.pixelColor(x, y);
        filled += seen == QColor(Qt::green);
        other += seen != QColor(Qt::green) && seen != QColor(Qt::black);
      }
    }
    EXPECT_EQ(other, 0) << scale;
    int expected = 0;
    for (const QRect& bar : view.renderer().bars(view.size() * scale)) expected += bar.width() * bar.height();
    EXPECT_EQ(filled, expected) << scale;
  }
}

}  // namespace
}  // namespace waveform
