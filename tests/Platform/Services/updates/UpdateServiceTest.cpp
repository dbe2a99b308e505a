#include <QDeadlineTimer>
#include <gtest/gtest.h>
#include <httplib.h>
#include <mutex>
#include <thread>

#include "Platform/Services/UpdateService.h"
#include "tests/Platform/Services/updates/SampleOffer.h"
#include "tests/support/EventLoopTest.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Variable.h"

namespace platform {
namespace {

using namespace std::chrono_literals;
using velmora::testing::contentOf;
using velmora::testing::put;
using velmora::testing::sampleOffer;
using velmora::testing::sampleSeed;
using velmora::testing::TemporaryFolder;
using velmora::testing::Variable;

/// Serves a feed and a program on the loopback; what it serves changes between requests only.
class FeedServer {
 public:
  FeedServer() {
    server_.Get("/feed", [this](const httplib::Request&, httplib::Response& response) {
      const std::lock_guard wait(gate);
      response.status = feedStatus;
      response.set_content(feed.toStdString(), "text/plain");
    });
    server_.Get("/program", [this](const httplib::Request& request, httplib::Response& response) {
      ++pieces;
      response.set_content(program.toStdString(), "application/octet-stream");
      if (!knowsPieces) const_cast<httplib::Request&>(request).ranges.clear();
    });
    port_ = server_.bind_to_any_port("127.0.0.1");
    thread_ = std::thread([this] { server_.listen_after_bind(); });
  }
  ~FeedServer() {
    server_.stop();
    thread_.join();
  }

  QUrl address(const char* path) const { return QString("http://127.0.0.1:%1%2").arg(port_).arg(path); }

  std::mutex gate;  // whoever holds it holds the feed back
  QByteArray feed;
  QByteArray program;
  int feedStatus = 200;
  bool knowsPieces = true;
  std::atomic<int> pieces = 0;

 private:
  httplib::Server server_;
  int port_ = 0;
  std::thread thread_;
};

using Score = std::vector<std::string>;

/// Writes down what the service says, and answers as it is told.
struct Listener final : UpdateServiceDelegate, UpdateUserDriver {
  bool supportsGentleScheduledUpdateReminders() const override { return isGentle; }
  bool standardUserDriverShouldHandleShowingScheduledUpdate(const UpdateOffer&, bool) override {
    return false;
  }
  void standardUserDriverWillHandleShowingUpdate(bool isShownThere, const UpdateOffer&,
                                                 const UpdateState&) override {
    score.push_back(isShownThere ? "showing it" : "leaving it to you");
  }
  void didFindValidUpdate(const UpdateOffer& update) override {
    score.push_back("found " + update.version.toStdString());
  }
  bool willInstallUpdateOnQuit(const UpdateOffer&, std::function<void()> block) override {
    install = std::move(block);
    score.push_back("will install");
    return takesOn;
  }
  void standardUserDriverWillFinishUpdateSession() override { score.push_back("finished"); }
  void didAbortWithError(const std::exception& error) override {
    score.push_back(std::string("aborted: ") + error.what());
  }

  void show(UpdateMessage shown) override {
    message = std::move(shown);
    if (message->progress != -1) score.push_back('[' + message->title.toStdString() + ']');
  }
  void showProgress(const QString&, double progress) override { lastProgress = progress; }
  void hide() override { message.reset(); }
  void open(const QUrl& page) override { score.push_back("open " + page.toString().toStdString()); }

  void press() { std::function(message->onAction)(); }
  void close() { std::function(message->onClose)(); }

  Score score;
  std::optional<UpdateMessage> message;
  std::function<void()> install;
  double lastProgress = 0;
  bool isGentle = true;
  bool takesOn = true;
};

class UpdateServiceTest : public velmora::testing::EventLoopTest {
 protected:
  UpdateServiceTest() {
    put(program_, "old");
    server_.program = QByteArray(5 << 19, 'n');  // two pieces and a half
    publish(sampleOffer(server_.program));
  }

  void publish(UpdateOffer offer) {
    offer.download = server_.address("/program");
    server_.feed = UpdateFeed::write(offer, sampleSeed);
  }
  UpdateService& start(const char* version = "0.1.0", UpdateService::Timing timing = {}) {
    const UpdateChannel channel{"Program", "com.example.Program",    "stable-test",
                                version,   server_.address("/feed"), key_};
    service_.emplace(channel,
                     UpdateService::Surroundings{client_, preferences_, installer_, listener_, listener_,
                                                 [this] { ++quits_; },
                                                 [] {
                                                   return QDateTime({2029, 1, 1}, {}, Qt::UTC);
                                                 }},
                     timing);
    service_->startUpdater();
    return *service_;
  }
  static bool await(const std::function<bool()>& condition) {
    const QDeadlineTimer deadline(20s);
    while (!condition() && !deadline.hasExpired())
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    return condition();
  }
  /// What was said since the last call, once it ends with that line.
  Score awaitLine(const std::string& last) {
    EXPECT_TRUE(await([&] { return !listener_.score.empty() && listener_.score.back() == last; })) << last;
    return std::exchange(listener_.score, {});
  }

  TemporaryFolder folder_;
  Variable settings_{"XDG_CONFIG_HOME", folder_.path().c_str()};
  const std::filesystem::path program_ = folder_ / "Program.AppImage";
  UpdateKey key_ = publicKey(sampleSeed);
  FeedServer server_;
  HTTPClient client_;
  Preferences preferences_;
  Listener listener_;
  UpdateInstaller installer_{program_};
  int quits_ = 0;
  std::optional<UpdateService> service_;
};

TEST_F(UpdateServiceTest, GetsTheUpdateThatTheUserWants) {
  start().checkForUpdates();
  EXPECT_EQ(awaitLine("[Program 0.2.0 is available]"),
            (Score{"found 0.2.0", "showing it", "[Program 0.2.0 is available]"}));
  EXPECT_EQ(listener_.message->text, "You have version 0.1.0. The download has 2.6 MB.");
  listener_.press();
  EXPECT_EQ(awaitLine("finished"), (Score{"[Downloading Program 0.2.0…]", "will install", "finished"}));
  EXPECT_EQ(server_.pieces, 3);
  EXPECT_EQ(listener_.lastProgress, 1);
  EXPECT_FALSE(listener_.message);
  EXPECT_EQ(contentOf(program_), "old");
  listener_.install();
  EXPECT_EQ(quits_, 1);
  EXPECT_EQ(contentOf(program_), "old") << "the end may be refused";
  service_->checkForUpdates();
  EXPECT_EQ(awaitLine("[Program 0.2.0 is ready]").size(), 1);
  service_.reset();
  installer_.setRelaunches(false);
  installer_.finish();
  EXPECT_EQ(QByteArray::fromStdString(contentOf(program_)), server_.program);
}

TEST_F(UpdateServiceTest, LeavesScheduledFindsToTheDelegate) {
  start("0.1.0", {1ms, 1ms});
  EXPECT_EQ(awaitLine("leaving it to you"), (Score{"found 0.2.0", "leaving it to you"}));
  awaitLine("leaving it to you");  // again and again
  listener_.isGentle = false;
  EXPECT_EQ(awaitLine("[Program 0.2.0 is available]").back(), "[Program 0.2.0 is available]");
  listener_.close();
  EXPECT_EQ(awaitLine("finished"), Score{"finished"});
  EXPECT_EQ(server_.pieces, 0);
}

TEST_F(UpdateServiceTest, WhatCannotReplaceItselfOpensThePage) {
  std::filesystem::remove(program_);
  EXPECT_FALSE(start().canInstall());
  service_->checkForUpdates();
  awaitLine("[Program 0.2.0 is available]");
  EXPECT_EQ(listener_.message->action, "Open Download Page");
  listener_.press();
  EXPECT_EQ(awaitLine("finished"), (Score{"open https://velmora.example/page", "finished"}));
}

TEST_F(UpdateServiceTest, TellsWhoAsksAndOnlyHim) {
  struct Row {
    std::function<void()> prepare;
    const char* version;
    std::string abort;  // empty for none
    const char* title;
  };
  UpdateOffer old = sampleOffer();
  old.expiry = QDateTime({2028, 1, 1}, {}, Qt::UTC);
  const char* const failed = "Could not check for updates";
  const Row rows[] = {
      {[] {}, "0.2.0", "", "Program is up to date."},
      {[this] { server_.feed[300] = static_cast<char>(server_.feed[300] ^ 1); }, "0.1.0",
       "The update information isn't signed as it should be.", failed},
      {[&] { publish(old); }, "0.1.0", "The update information is out of date.", failed},
      {[this] { server_.feed = QByteArray(UpdateFeed::limit + 1000, ' '); }, "0.1.0",
       "The update information is too long.", failed},
      {[this] { server_.feedStatus = 302; }, "0.1.0", "The server answered with status 302.", failed}};
  for (const auto& [prepare, version, abort, title] : rows) {
    server_.feedStatus = 200;
    publish(sampleOffer(server_.program));
    prepare();
    const std::string end = abort.empty() ? "finished" : "aborted: " + abort;
    start(version).checkForUpdates();
    EXPECT_EQ(awaitLine('[' + std::string(title) + ']').front(), end);
    start(version, {1ms, 24h});
    EXPECT_EQ(awaitLine(end), Score{end}) << "nothing on the screen";
  }
}

TEST_F(UpdateServiceTest, TakesNoStepBack) {
  start().checkForUpdates();
  awaitLine("[Program 0.2.0 is available]");
  UpdateOffer earlier = sampleOffer(server_.program);
  earlier.sequence = 6;
  earlier.version = "0.3.0";
  publish(earlier);
  start().checkForUpdates();  // a new process
  EXPECT_EQ(awaitLine("[Could not check for updates]").front(),
            "aborted: The update information is older than what was known before.");
}

TEST_F(UpdateServiceTest, AFailedDownloadLeavesNothing) {
  struct Row {
    std::function<void()> prepare;
    const char* line;
  };
  const QByteArray whole = server_.program;
  const Row rows[] = {
      {[&] { server_.program[9] = 'x'; }, "Program.AppImage: The update isn't what was announced"},
      {[&] { server_.program.chop(1); }, "The server answered with status 416."},
      {[&] { server_.program = "too small"; }, "The server answered with status 416."},
      {[&] { server_.knowsPieces = false; }, "The server sent something else than was asked for."}};
  for (const auto& [prepare, line] : rows) {
    server_.program = whole;
    start().checkForUpdates();
    awaitLine("[Program 0.2.0 is available]");
    prepare();
    listener_.press();
    EXPECT_EQ(awaitLine("[Could not get the update]"),
              (Score{"[Downloading Program 0.2.0…]", std::string("aborted: ") + line,
                     "[Could not get the update]"}));
    installer_.finish();
    EXPECT_EQ(contentOf(program_), "old");
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path()))
      EXPECT_TRUE(entry.is_directory() || entry == program_) << entry << " stayed behind";
  }
}

TEST_F(UpdateServiceTest, TheUserMayCancel) {
  std::unique_lock hold(server_.gate);
  start().checkForUpdates();
  ASSERT_TRUE(listener_.message);
  listener_.close();
  EXPECT_EQ(awaitLine("finished"), Score{"finished"});
  hold.unlock();
  service_->checkForUpdates();
  awaitLine("[Program 0.2.0 is available]");
  listener_.press();
  listener_.close();
  EXPECT_EQ(awaitLine("finished"), (Score{"[Downloading Program 0.2.0…]", "finished"}));
  hold.lock();
  service_->checkForUpdates();
  service_.reset();  // with a check under way
}

TEST_F(UpdateServiceTest, WithoutAKeyThereIsNoChannel) {
  Listener silent;
  UpdateService service({"Program", "a", "b", "1", server_.address("/feed")},
                        {client_, preferences_, installer_, silent, silent, {}}, {1ms, 1ms});
  service.startUpdater();
  start("0.1.0", {1ms, 1ms});
  for (int check = 0; check < 3; ++check) awaitLine("leaving it to you");
  EXPECT_EQ(silent.score, Score{});
  service.checkForUpdates();
  EXPECT_EQ(silent.score, Score{"[This Program has no update channel.]"});
}

TEST_F(UpdateServiceTest, StartsWithAnAddressOnly) {
  for (const char* address : {"", "feed", "ftp://velmora.example/feed", "https:///feed"}) {
    UpdateService service({"Program", "a", "b", "1", QUrl(address), key_},
                          {client_, preferences_, installer_, listener_, listener_, {}});
    EXPECT_THROW(service.startUpdater(), UpdateFeedError) << address;
  }
}

}  // namespace
}  // namespace platform
