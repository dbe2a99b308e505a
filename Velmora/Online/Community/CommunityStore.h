#pragma once

#include <QCoroTask>
#include <QObject>
#include <QTimer>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "Platform/Audio/AudioPlayer.h"
#include "Velmora/Audio/OfflineExporter.h"
#include "Velmora/Model/Observed.h"
#include "Velmora/Online/Account/JSONDecoding.h"
#include "Velmora/Online/Community/CommunityAPI.h"
#include "Velmora/Online/Community/CommunityRecords.h"
#include "Velmora/Online/Community/PreviewFile.h"

namespace velmora {

/// The model of the community window, for as long as that is open: a page of the feed, the creator's own
/// profile and previews, what plays, and the one operation of the user's that may run. Main thread; the tasks
/// run whether they are awaited or not and report their own failures in `message`.
class CommunityStore final : public QObject {
 public:
  /// Makes the output that one preview plays on.
  using MakeOutput = std::function<std::unique_ptr<platform::OutputDevice>()>;

  CommunityStore(CommunityAPI api, std::optional<std::string> token, MakeOutput makeOutput);
  /// What runs is cancelled, and the preview's file goes.
  ~CommunityStore() override;

  Observed<std::vector<CommunityPost>, CommunityStore> posts;  ///< the current page only
  Observed<std::optional<CommunityStudio>, CommunityStore> studio;
  Observed<std::int64_t, CommunityStore> page{1};
  Observed<std::optional<std::int64_t>, CommunityStore> nextPage;
  Observed<std::string, CommunityStore> order{"newest"};  ///< "newest", "popular" or "following"
  Observed<bool, CommunityStore> isLoading;               ///< the feed
  Observed<bool, CommunityStore> isBusy;                  ///< an operation of the user's
  Shared<std::optional<std::string>, CommunityStore> message;
  Observed<std::optional<UUID>, CommunityStore> playingID;  ///< the post that plays
  Observed<std::optional<std::filesystem::path>, CommunityStore> localPreview;

  bool isSignedIn() const;

  /// A new order cancels the load before it and loads page 1.
  void setOrder(std::string value);
  QCoro::Task<> load(std::int64_t pageNumber);

  // The user's operations; refused while another one runs.
  void toggleVote(const CommunityPost& post);
  void toggleFollow(const CommunityCreator& creator);
  void block(UUID creatorID);
  void unblock(UUID creatorID);
  void deletePreview(UUID postID);
  struct Profile {
    std::string handle, displayName, bio;
    bool acceptedRules = false;
  };
  void saveProfile(Profile profile);
  struct Report {
    UUID creatorID;
    std::optional<UUID> postID;  ///< none if it concerns the profile
    std::string reason, details;
  };
  void sendReport(Report report);
  /// The first 20 seconds of the song, into a file of this user's alone.
  void renderPreview(Song song, AudioSamples samples);
  void publishPreview(std::string title, std::string caption, bool ownsRights);

  void togglePlayback(UUID postID);
  void playLocalPreview();
  void stopPlayback();
  void discardLocalPreview();

  /// The window is gone: what runs is cancelled, answers on their way are dropped, the preview goes.
  void close();

 private:
  enum class Afterwards { nothing, reload };
  enum class Relation { off, on };
  enum class Answer { ok, okOrNull };
  using Operation = std::function<QCoro::Task<>(std::stop_token)>;

  /// The frame of every operation of the user's.
  QCoro::Task<> perform(Afterwards afterwards, Operation operation);
  void setRelation(QString path, Relation relation, Answer answer = Answer::ok);

  // What an operation does, or a load. After each wait they go on only if nobody stopped them, and thus only
  // while the store lives; otherwise they throw `Cancelled`.
  QCoro::Task<QByteArray> send(CommunityAPI::Request request, std::stop_token stop) const;
  QCoro::Task<> readPage(std::int64_t pageNumber, std::stop_token stop);
  QCoro::Task<> sendRelation(QString path, Relation relation, Answer answer, std::stop_token stop);
  QCoro::Task<> post(QString path, QByteArray json, void (*check)(const JSONValue& answer), const char* told,
                     std::stop_token stop);
  QCoro::Task<> render(Song song, AudioSamples samples, std::stop_token stop);
  QCoro::Task<> publish(QByteArray json, std::stop_token stop);
  QCoro::Task<> fetchAndPlay(UUID postID, std::stop_token stop);

  std::stop_token overtakeLoads();
  void start(std::unique_ptr<platform::AudioPlayer> player, std::optional<UUID> postID);

  const CommunityAPI api_;
  const std::optional<std::string> token_;
  const MakeOutput makeOutput_;
  std::unique_ptr<PreviewFile> preview_;    // of `localPreview`
  std::unique_ptr<PreviewFile> rendering_;  // that the exporter fills
  OfflineExporter exporter_;                // waits for its work before the files go
  std::stop_source operation_;
  std::stop_source loading_;
  std::int64_t loadVersion_ = 0;  // raised by each load and at the end
  std::unique_ptr<platform::AudioPlayer> player_;
  QTimer playbackEnd_;
};

}  // namespace velmora
