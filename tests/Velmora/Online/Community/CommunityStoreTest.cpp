#include <functional>
#include <gtest/gtest.h>

#include "Platform/Tasks/ResultOf.h"
#include "Velmora/Online/Account/AccountRecords.h"
#include "Velmora/Online/Community/CommunityStore.h"
#include "tests/support/EventLoopTest.h"
#include "tests/support/Files.h"
#include "tests/support/ModelBench.h"
#include "tests/support/Songs.h"
#include "tests/support/service/ServiceDouble.h"

namespace velmora::testing {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

class CommunityStoreTest : public EventLoopTest {
 protected:
  CommunityStoreTest() {
    service.addProfile(friendID, {.handle = "friend"});
    service.addProfile(userID, {.handle = "myself"});
    for (const char* title : {"old", "new"})
      service.addPost(friendID, {.title = title, .wav = toneWAV(50ms)});
    open(token);
  }
  void open(const std::optional<std::string>& itsToken) {
    store = std::make_unique<CommunityStore>(CommunityAPI(client, service.address()), itsToken, [this] {
      auto made = std::make_unique<HandDrivenOutput>(rate);
      output = made.get();
      return made;
    });
    EXPECT_EQ(after([this] { store->load(1); }), "");
  }
  /// What the store says once it has done that.
  std::string after(const std::function<void()>& act) const {
    act();
    const bool rests = spinUntil([this] { return !store->isBusy() && !store->isLoading(); });
    return rests ? store->message().value_or("") : "busy";
  }
  /// What has come since the last look, without the common part of the paths.
  std::string news() {
    std::string text;
    const auto all = service.requests();
    for (; seen < all.size(); ++seen) {
      const ServiceRequest& request = all[seen];
      text +=
          request.method + request.path.substr(std::string("/api/v1/community").size()).replace(0, 1, " ");
      if (!request.query.empty()) text += "?" + request.query;
      if (const auto type = request.header("Content-Type")) text += " " + *type + " " + request.body;
      text += "\n";
    }
    return text;
  }
  std::string titles() const {
    std::string text;
    for (const CommunityPost& post : store->posts()) text += post.title + " ";
    return text;
  }
  bool hasFiles() const { return !fs::is_empty(folder.path()); }
  std::string render(Song song = Song::demo()) const {
    for (Clip& clip : song.clips.write()) clip.lengthBeats += 40;
    return after([&] { store->renderPreview(song, {}); });
  }
  std::string publish() const {
    return after([this] { store->publishPreview("Title", "c", true); });
  }

  TemporaryFolder folder;
  Variable temporary{"TMPDIR", folder.path().c_str()};
  ServiceDouble service;
  const std::string friendID = service.addAccount({"friend"}), userID = service.addAccount({"me"});
  const std::string token = service.openSession(userID);
  platform::HTTPClient client;
  double rate = 48000;
  HandDrivenOutput* output = nullptr;
  std::size_t seen = 0;
  std::unique_ptr<CommunityStore> store;
};

TEST_F(CommunityStoreTest, SendsWhatTheServiceExpects) {
  const CommunityPost post = store->posts().at(0);
  CommunityPost voted = post;
  voted.voted = voted.creator.following = true;
  const std::string at = "posts/" + post.id.text(), by = "creators/" + friendID, json = " application/json ";
  const std::string own = service.addPost(userID, {.title = "mine", .state = "pending"});
  const std::string reload = "GET feed?order=newest&page=1\nGET me\n";
  const std::string sent = "Profile sent for review. It will appear after approval.";
  const std::string heard = "Report received. Thank you for letting us know.";
  const std::string profile =
      R"({"acceptedRules":true,"bio":"b","displayName":"My \"name\"","handle":"myself"})";
  const std::string report = R"({"creatorId":")" + friendID + R"(","details":"d",)",
                    reason = R"("reason":"spam"})";
  service.answer("DELETE .*posts/" + own, 200, "null");
  EXPECT_EQ(news(), reload);
  struct Row {
    std::function<void()> act;
    std::string requests, message;
  };
  const Row rows[] = {
      {[&] { store->toggleVote(post); }, "POST " + at + "/vote\n" + reload},
      {[&] { store->toggleVote(voted); }, "DELETE " + at + "/vote\n" + reload},
      {[&] { store->toggleFollow(post.creator); }, "POST " + by + "/follow\n" + reload},
      {[&] { store->toggleFollow(voted.creator); }, "DELETE " + by + "/follow\n" + reload},
      {[&] { store->block(post.creator.id); }, "POST " + by + "/block\n" + reload},
      {[&] { store->unblock(post.creator.id); }, "DELETE " + by + "/block\n" + reload},
      {[&] { store->deletePreview(*UUID::parse(own)); }, "DELETE posts/" + own + "\n" + reload},
      {[&] { store->togglePlayback(post.id); }, "GET " + at + "/audio\n"},
      {[&] { store->setOrder("following"); }, "GET feed?order=following&page=1\nGET me\n"},
      {[&] { store->setOrder("newest"); }, reload},
      {[&] { store->setOrder("newest"), store->setOrder("oldest"); }, ""},
      {[&] { store->publishPreview("T", "c", true), store->playLocalPreview(); }, ""},
      {[&] {
         store->saveProfile({"myself", "My \"name\"", "b", true});
       },
       "POST profile" + json + profile + "\n" + reload, sent},
      {[&] {
         store->sendReport({post.creator.id, {}, "spam", "d"});
       },
       "POST reports" + json + report + reason + "\n" + reload, heard},
      {[&] {
         store->sendReport({post.creator.id, post.id, "spam", "d"});
       },
       "POST reports" + json + report + R"("postId":")" + post.id.text() + "\"," + reason + "\n" + reload,
       heard},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(after(row.act), row.message);
    EXPECT_EQ(news(), row.requests);
  }
  for (const ServiceRequest& request : service.requests()) {
    EXPECT_EQ(request.header("Authorization"), "Bearer " + token);
    EXPECT_FALSE(request.header("Accept") || request.header("Cookie"));
  }
  open({});
  EXPECT_EQ(after([&] { store->setOrder("following"); }), "");
  EXPECT_EQ(news(), "GET feed?order=newest&page=1\n");
  EXPECT_EQ(titles(), "new old ");
  EXPECT_FALSE(service.requests().back().header("Authorization"));
}

TEST_F(CommunityStoreTest, TellsFailuresInTheServicesWordsOrItsOwn) {
  const CommunityAPI api(client, service.address());
  const auto outcome = [&] {
    try {
      return std::to_string(platform::resultOf(api.sendCommunityRequest({.path = "feed"}, {})).size());
    } catch (const AccountAPIError& error) {
      return std::to_string(error.status()) + " " + error.what();
    } catch (const platform::HTTPError&) {
      return std::string("no answer");
    }
  };
  service.pour("feed", 3'800'000);
  EXPECT_EQ(outcome(), "3800000");
  service.pour("feed", 3'800'001);
  EXPECT_EQ(outcome(), "413 This preview is too large.");
  service.answer("feed", 500, R"({"pad":")" + std::string(4'000'000, 'x') + R"(","error":"Gone fishing."})");
  EXPECT_EQ(outcome(), "500 Gone fishing.");
  for (const int status : {302, 401, 429, 500}) {
    service.answer("feed", status, status == 500 ? "<html>" : "");
    EXPECT_EQ(outcome(),
              std::to_string(status) + " The community is temporarily unavailable. Please try again.");
  }
  service.answer("feed", 200, R"({"posts":[]})");
  service.cut("feed");
  EXPECT_EQ(outcome(), "no answer");

  service.setPageSize(1);
  service.answer("GET .*/me", 500, R"({"error":"No studio."})");
  EXPECT_EQ(after([&] { store->load(2); }), "No studio.");
  EXPECT_EQ(titles(), "old ");
  service.answer("feed", 200, R"({"posts":[{}]})");
  EXPECT_EQ(after([&] { store->load(1); }),
            R"(The answer of the service can't be read: "posts[0].id" is missing.)");
  EXPECT_TRUE(titles() == "old " && store->page() == 2);
}

TEST_F(CommunityStoreTest, DropsStaleAnswersAndRefusesASecondOperation) {
  service.setPageSize(1);
  service.answer("popular", 200, R"({"posts":[],"nextPage":9})");
  service.answer("GET .*/me", 200, R"({"posts":[],"blocked":[]})");
  service.hold("popular");
  service.hold("GET .*/me");
  store->setOrder("popular");
  ASSERT_TRUE(service.await("popular"));
  store->setOrder("following");  // has its feed, which is empty, and waits for the rest
  ASSERT_TRUE(service.await("GET .*/me", 2) && store->isLoading());
  EXPECT_EQ(after([&] { store->setOrder("newest"); }), "");
  service.release();
  const UUID playing = store->posts().at(0).id;
  for (int round = 0; round < 4; ++round)  // what was held has time to come
    EXPECT_EQ(after([&] { store->togglePlayback(playing); }), "");
  EXPECT_TRUE(titles() == "new " && store->nextPage() == 2 && store->studio()->profile);
  EXPECT_EQ(after([&] { store->load(2); }), "");
  EXPECT_EQ(titles(), "old ");
  EXPECT_TRUE(store->order() == "newest" && store->page() == 2 && !store->nextPage());

  service.hold("POST .*/vote");
  const CommunityPost post = store->posts().at(0);
  store->toggleVote(post);
  ASSERT_TRUE(service.await("POST .*/vote"));
  store->block(post.creator.id);
  store->load(1);  // is no operation
  ASSERT_TRUE(spinUntil([&] { return !store->isLoading(); }) && store->isBusy());
  EXPECT_TRUE(service.requests("block").empty());
  EXPECT_EQ(after([&] { service.release(); }), "");
  EXPECT_EQ(titles(), "new ");

  service.hold("page=2");
  store->load(2);
  ASSERT_TRUE(service.await("page=2", 2));
  store->close();
  EXPECT_EQ(after([&] { service.release(); }), "");
  EXPECT_EQ(titles(), "new ");
}

TEST_F(CommunityStoreTest, PlaysOnePreviewAtATimeUntilItsEnd) {
  const auto toggle = [&](std::size_t i) {
    return after([&] { store->togglePlayback(store->posts().at(i).id); });
  };
  EXPECT_EQ(toggle(0), "");
  EXPECT_GT(output->pull(480).peak(), 0.1F);
  EXPECT_EQ(toggle(1), "");
  EXPECT_EQ(store->playingID(), store->posts().at(1).id);
  EXPECT_TRUE(spinUntil([&] { return !store->playingID(); }));  // after 50 ms and 0.1 s
  EXPECT_TRUE(toggle(0).empty() && store->playingID());
  EXPECT_TRUE(toggle(0).empty() && !store->playingID());

  service.answer("audio", 200, "<html>");
  EXPECT_EQ(toggle(0), "sound: Format not recognised");
  rate = 0;
  EXPECT_EQ(toggle(0), "Audio could not start.");
  EXPECT_FALSE(store->playingID());
}

TEST_F(CommunityStoreTest, RendersPlaysAndPublishesAPreview) {
  EXPECT_EQ(render(sampleSong()), "Reload the missing audio files before making a preview.");
  EXPECT_FALSE(hasFiles());
  EXPECT_EQ(render(), "Preview ready. Listen before you publish it.");
  const fs::path first = store->localPreview().value();
  EXPECT_TRUE(first.parent_path() == folder.path() && first.extension() == ".wav");
  EXPECT_TRUE(UUID::parse(first.stem().string()));
  render();
  EXPECT_FALSE(fs::exists(first));
  const fs::path file = store->localPreview().value();
  EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_EQ(fs::file_size(file), 44U + 20U * 44100U * 4U);
  store->playLocalPreview();
  EXPECT_TRUE(output->isPlaying() && !store->playingID());

  service.answer("PUT .*/audio", 507, R"({"error":"No room."})");
  service.hold("DELETE .*/posts/");
  store->publishPreview("Title", "c", true);
  ASSERT_TRUE(service.await("DELETE .*/posts/"));
  EXPECT_TRUE(!store->message() && store->isBusy());
  EXPECT_EQ(after([&] { service.release(); }), "No room.");
  EXPECT_TRUE(fs::exists(file) && store->studio()->posts.empty());

  fs::resize_file(file, 3'800'001);
  news();
  EXPECT_EQ(publish(), "The preview is too large.");
  EXPECT_EQ(news(), "");
  fs::resize_file(file, 3'800'000);
  const std::string sent = contentOf(file);
  EXPECT_EQ(publish(), "Preview sent for review. Your project stays on this device.");
  EXPECT_EQ(news(), R"(POST posts application/json {"caption":"c","ownsRights":true,"title":"Title"})"
                    "\nPUT posts/" +
                        store->studio()->posts.at(0).id.text() + "/audio audio/wav " + sent +
                        "\nGET feed?order=newest&page=1\nGET me\n");
  EXPECT_FALSE(hasFiles() || store->localPreview());

  render();
  put(store->localPreview().value(), "nothing");
  EXPECT_EQ(after([&] { store->playLocalPreview(); }), "The preview could not play. Try rendering it again.");
}

TEST_F(CommunityStoreTest, LeavesNothingBehindWhereverItIsClosed) {
  render();
  service.hang("PUT .*/audio", 2);
  store->publishPreview("Title", "c", true);
  ASSERT_TRUE(service.await("PUT .*/audio"));
  store->close();
  EXPECT_FALSE(hasFiles() || store->localPreview());
  EXPECT_EQ(after([] {}), "");
  EXPECT_EQ(service.requests("DELETE .*/posts/").size(), 1U);

  store->renderPreview(Song::demo(), {});
  EXPECT_EQ(after([&] { store->close(); }), "");
  EXPECT_FALSE(hasFiles() || store->localPreview());
  store->renderPreview(Song::demo(), {});
  store.reset();
  EXPECT_FALSE(hasFiles());

  open(token);
  render();
  store->publishPreview("Title", "c", true);
  ASSERT_TRUE(service.await("PUT .*/audio", 2));
  store.reset();
  EXPECT_TRUE(!hasFiles() && service.await("DELETE .*/posts/", 2));
}

}  // namespace
}  // namespace velmora::testing
