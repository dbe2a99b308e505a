#pragma once

#include <gtest/gtest.h>
#include <memory>

#include "Velmora/Online/Updates/AppUpdater.h"
#include "tests/support/ModelBench.h"

namespace velmora::testing {

/// An updater over a real model and a service that only counts.
class UpdaterBench : public ::testing::Test {
 protected:
  struct Controller final : platform::UpdateController {
    explicit Controller(const UpdaterBench& owner) : bench(owner) {}
    void startUpdater() override {
      ++starts;
      if (bench.failsToStart_) throw platform::UpdateFeedError("no");
    }
    void checkForUpdates() override { ++checks; }
    bool canInstall() const override { return bench.canInstall_; }

    const UpdaterBench& bench;
    int starts = 0;
    int checks = 0;
  };

  UpdaterBench() {
    bench_.open();
    makeUpdater();
  }

  void makeUpdater() {
    updater_ = std::make_unique<AppUpdater>([this](platform::UpdateServiceDelegate&) {
      auto controller = std::make_unique<Controller>(*this);
      controller_ = controller.get();
      return controller;
    });
  }
  AppModel& model() { return *bench_.model; }
  static platform::UpdateOffer offer(const char* version) { return {.version = version}; }

  void record() {
    model().addTrack(TrackKind::audio());
    ASSERT_TRUE(spinUntil([&] { return !model().isProjectBusy() && !model().isAudioBusy(); }));
    model().startRecording();
    ASSERT_TRUE(spinUntil([&] { return model().isRecording(); }));
  }
  /// The take that was being recorded can't be read, and so waits.
  void loseTake() {
    auto stopping = model().stopRecording(true);
    ASSERT_TRUE(spinUntil([&] { return stopping.isReady() && !model().isAudioBusy(); }));
    ASSERT_TRUE(model().pendingTake());
  }

  ModelBench bench_;
  std::unique_ptr<AppUpdater> updater_;
  Controller* controller_ = nullptr;
  bool failsToStart_ = false;
  bool canInstall_ = true;
  int installations_ = 0;
};

}  // namespace velmora::testing
