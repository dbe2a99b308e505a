#include <QAccessible>
#include <QLabel>
#include <QTest>
#include <gtest/gtest.h>

#include "Velmora/Studio/Mixer/ChannelStrip.h"
#include "Velmora/Studio/Mixer/MeterView.h"
#include "Velmora/Studio/Mixer/MixerView.h"
#include "Velmora/Studio/Parts/KnobWithCaption.h"
#include "Velmora/Theme/ToggleChip.h"
#include "tests/support/GoldenPicture.h"
#include "tests/support/ModelBench.h"

namespace velmora {
namespace {

TEST(MeterReadingTest, IsLinearInDecibels) {
  struct Row {
    float peak, gain;
    double fraction;
    bool isClipping;
    const char *text, *spoken;
  };
  for (const Row& row : {Row{1, 1, 1, true, "0.0 dB", "0 decibels"},
                         {0.999F, 1, 0.99985, false, "-0.0 dB", "0 decibels"},
                         {1.2F, 0.1F, 0.6931, true, "-18.4 dB", "-18 decibels"},
                         {1, 0, 0, true, "−∞ dB", "-100 decibels"},
                         {0, 1, 0, false, "−∞ dB", "-100 decibels"},
                         {0.0001F, 1, 0, false, "-80.0 dB", "-80 decibels"}}) {
    const MeterReading reading = MeterReading::of(row.peak, row.gain);
    EXPECT_NEAR(reading.fraction, row.fraction, 1e-3) << row.peak;
    EXPECT_EQ(reading.isClipping, row.isClipping) << row.peak;
    EXPECT_EQ(reading.text(), row.text);
    EXPECT_EQ(reading.spoken(), row.spoken);
  }
}

class MixerViewTest : public ::testing::Test {
 protected:
  void SetUp() override {
    bench_.open();
    view_.resize(1000, 600);
    view_.show();
  }
  template <class Child>
  Child* find(const QString& name, const QWidget* in = nullptr) {
    for (Child* child : (in ? in : &view_)->template findChildren<Child*>())
      if (child->accessibleName() == name) return child;
    ADD_FAILURE() << "no " << name.toStdString();
    return nullptr;
  }
  QString spoken(QWidget* widget) {
    return QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Value);
  }
  const Track& drums() const { return bench_.model->song().tracks[0]; }

  testing::ModelBench bench_;
  MixerView view_{*bench_.model};
};

TEST_F(MixerViewTest, TurnsKnobsAndChipsIntoCommands) {
  QTest::mouseClick(find<ToggleChip>("Mute Drums"), Qt::LeftButton);
  QTest::mouseClick(find<ToggleChip>("Solo Chords"), Qt::LeftButton);
  EXPECT_TRUE(drums().isMuted && bench_.model->song().tracks[1].isSoloed);
  QCoreApplication::processEvents();
  EXPECT_TRUE(find<ToggleChip>("Mute Drums")->isOn());

  struct Row {
    const char* name;
    float normal;  // where an End key leaves it
    const char* spoken;
  };
  for (const Row& row : {Row{"Drums volume", 1, "100 percent"},
                         {"Drums pan", 1, "1"},
                         {"Drums LOW", 12, "12 decibels"},
                         {"Drums HIGH", 12, "12 decibels"},
                         {"Drums REVERB", 1, "100 percent"},
                         {"Master volume", 1, "100 percent"}}) {
    auto* knob = find<KnobWithCaption>(row.name);
    QTest::keyClick(knob, Qt::Key_End);
    EXPECT_EQ(knob->value(), row.normal) << row.name;
    EXPECT_EQ(spoken(knob), row.spoken);
  }
  EXPECT_EQ(drums().volume, 1);
  EXPECT_EQ(drums().fx, (FXSettings{.lowGainDB = 12, .highGainDB = 12, .reverbMix = 1}));
  QTest::mouseDClick(find<KnobWithCaption>("Drums LOW"), Qt::LeftButton);
  EXPECT_EQ(drums().fx.lowGainDB, 0);
}

TEST_F(MixerViewTest, FollowsTheSong) {
  const auto strips = view_.strips();
  bench_.model->setTrackPan(drums().id, 0.5F);
  QCoreApplication::processEvents();
  EXPECT_EQ(view_.strips(), strips);  // kept
  EXPECT_EQ(find<KnobWithCaption>("Drums pan")->value(), 0.5F);
  bench_.model->addTrack(TrackKind::audio());
  QCoreApplication::processEvents();
  EXPECT_EQ(view_.strips().size(), 3U);
  while (!bench_.model->song().tracks.empty()) bench_.model->deleteTrack(drums().id);
  QCoreApplication::processEvents();
  EXPECT_TRUE(view_.strips().empty());
  EXPECT_TRUE(find<KnobWithCaption>("Master volume")->isVisible());
}

/// Knobs and chips at various places; neither words nor symbols.
TEST_F(MixerViewTest, AStripLooksAsItDid) {
  bench_.model->setTrackPan(drums().id, -0.5F);
  bench_.model->setTrackEffect(&FXSettings::lowGainDB, drums().id, 9);
  bench_.model->setTrackEffect(&FXSettings::reverbMix, drums().id, 0.7F);
  bench_.model->toggleSolo(drums().id);
  QCoreApplication::processEvents();
  QWidget& strip = *view_.strips()[0];
  std::vector<QRect> words{{10, 10, 130, 30}};
  const auto cover = [&](const QWidget& part, const QRect& inside) {
    words.push_back(inside.translated(part.mapTo(&strip, QPoint())));
  };
  for (const auto* part : strip.findChildren<QWidget*>()) {
    if (dynamic_cast<const QLabel*>(part)) cover(*part, part->rect());
    if (dynamic_cast<const ToggleChip*>(part)) cover(*part, {14, 14, 16, 16});
    if (dynamic_cast<const KnobWithCaption*>(part)) cover(*part, {0, 40, part->width(), 14});
    if (dynamic_cast<const MeterView*>(part))
      cover(*part, part->rect().adjusted(part->width() - 54, 0, 0, 0));
  }
  EXPECT_TRUE(testing::isGolden(testing::pictureOf(strip, strip.rect(), words), "strip"));
}

TEST_F(MixerViewTest, MetersMoveWhileItPlaysAndFallSilentWhenMuted) {
  bench_.model->play();
  auto* meter = find<MeterView>("Peak level", view_.strips()[0]);
  ASSERT_TRUE(testing::spinUntil([&] {
    bench_.device->pull(512);
    return !meter->reading().isSilent;
  }));
  bench_.model->toggleMute(drums().id);
  ASSERT_TRUE(testing::spinUntil([&] {
    bench_.device->pull(512);
    return meter->reading().isSilent;
  }));
  EXPECT_EQ(spoken(meter), "-100 decibels");
}

}  // namespace
}  // namespace velmora
