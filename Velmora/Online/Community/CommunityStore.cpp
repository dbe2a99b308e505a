#include "Velmora/Online/Community/CommunityStore.h"

#include <QPointer>
#include <algorithm>
#include <chrono>
#include <exception>
#include <utility>

#include "Platform/Files/Files.h"
#include "Platform/Tasks/Cancelled.h"
#include "Velmora/Online/Account/AccountCoding.h"
#include "Velmora/Online/Community/CommunityCoding.h"

namespace velmora {
namespace {

constexpr double previewSeconds = 20;
constexpr double playbackMargin = 0.1;  // seconds
constexpr int badRequest = 400;
constexpr int contentTooLarge = 413;
constexpr int serviceUnavailable = 503;

QString text(const UUID& id) { return QString::fromStdString(id.text()); }
QString creatorPath(const UUID& id) { return "creators/" + text(id); }
QString postPath(const UUID& id) { return "posts/" + text(id); }

void requireNotStopped(const std::stop_token& stop) {
  if (stop.stop_requested()) throw platform::Cancelled();
}

bool hasEverySample(const Song& song, const AudioSamples& samples) {
  return std::ranges::all_of(song.clips, [&](const Clip& clip) {
    return clip.source.isPattern() || samples.contains(clip.source.id);
  });
}

QByteArray audioToSend(const std::filesystem::path& path) {
  constexpr auto limit = static_cast<std::size_t>(CommunityAPI::longestBody);
  const std::string bytes = platform::readFile(path, limit);
  if (bytes.size() > limit) throw AccountAPIError(contentTooLarge, "The preview is too large.");
  return QByteArray::fromStdString(bytes);
}

/// Removes a post that got no sound; whether that works is of no interest.
QCoro::Task<> removeHalfMade(CommunityAPI api, std::optional<std::string> token, QString path) {
  try {
    CommunityAPI::Request request{.method = "DELETE", .path = std::move(path)};
    auto removing = api.sendCommunityRequest(std::move(request), std::move(token));
    co_await removing;
  } catch (const std::exception&) {  // the failure that led here is the one to tell
  }
}

/// A post and its sound, or neither. Also takes back what was stopped half-way, when the store may be gone.
QCoro::Task<> sendPreview(CommunityAPI api, std::optional<std::string> token, QByteArray json,
                          QByteArray audio, std::stop_token stop) {
  CommunityAPI::Request creation{.method = "POST", .path = "posts", .body = std::move(json)};
  auto creating = api.sendCommunityRequest(std::move(creation), token, stop);
  const QByteArray created = co_await creating;
  const QString path = postPath(decodeCreated(JSONValue::parse(created)).id);
  std::exception_ptr error;
  try {
    requireNotStopped(stop);
    CommunityAPI::Request upload{
        .method = "PUT", .path = path + "/audio", .body = std::move(audio), .contentType = "audio/wav"};
    auto uploading = api.sendCommunityRequest(std::move(upload), token, stop);
    co_await uploading;
  } catch (...) {
    error = std::current_exception();
  }
  if (!error) co_return;
  auto removing = removeHalfMade(api, token, path);
  co_await removing;
  std::rethrow_exception(error);
}

}  // namespace

CommunityStore::CommunityStore(CommunityAPI api, std::optional<std::string> token, MakeOutput makeOutput)
    : api_(std::move(api)), token_(std::move(token)), makeOutput_(std::move(makeOutput)) {
  playbackEnd_.setSingleShot(true);
  playbackEnd_.setTimerType(Qt::PreciseTimer);
  QObject::connect(&playbackEnd_, &QTimer::timeout, this, &CommunityStore::stopPlayback);
}

CommunityStore::~CommunityStore() { close(); }

bool CommunityStore::isSignedIn() const { return token_.has_value(); }

void CommunityStore::setOrder(std::string value) {
  const bool isKnown = value == "newest" || value == "popular" || (value == "following" && isSignedIn());
  if (!isKnown || value == order()) return;
  order.set(std::move(value));
  load(1);
}

QCoro::Task<> CommunityStore::load(std::int64_t pageNumber) {
  const QPointer<CommunityStore> self(this);
  const std::stop_token stop = overtakeLoads();
  const std::int64_t version = loadVersion_;
  isLoading.set(true);
  std::optional<std::string> failure;
  try {
    auto reading = readPage(pageNumber, stop);
    co_await reading;
  } catch (const platform::Cancelled&) {  // by a newer load, or by the end
  } catch (const std::exception& error) {
    failure = error.what();
  }
  if (!self || loadVersion_ != version) co_return;
  if (failure) message.set(failure);
  isLoading.set(false);
}

/// Whoever comes next stops what runs, whose answer is of no use any more.
std::stop_token CommunityStore::overtakeLoads() {
  ++loadVersion_;
  loading_.request_stop();
  loading_ = std::stop_source();
  return loading_.get_token();
}

QCoro::Task<> CommunityStore::readPage(std::int64_t pageNumber, std::stop_token stop) {
  CommunityAPI::Request feedRequest{.path = "feed"};
  feedRequest.query.addQueryItem("order", QString::fromStdString(order()));
  feedRequest.query.addQueryItem("page", QString::number(pageNumber));
  auto readingFeed = send(std::move(feedRequest), stop);
  const QByteArray feedAnswer = co_await readingFeed;
  CommunityFeed feed = decodeFeed(JSONValue::parse(feedAnswer));
  posts.set(std::move(feed.posts));
  page.set(pageNumber);
  nextPage.set(feed.nextPage);
  if (!isSignedIn()) co_return;
  CommunityAPI::Request studioRequest{.path = "me"};
  auto readingStudio = send(std::move(studioRequest), stop);
  const QByteArray studioAnswer = co_await readingStudio;
  studio.set(decodeStudio(JSONValue::parse(studioAnswer)));
}

QCoro::Task<QByteArray> CommunityStore::send(CommunityAPI::Request request, std::stop_token stop) const {
  auto sending = api_.sendCommunityRequest(std::move(request), token_, stop);
  const QByteArray answer = co_await sending;
  requireNotStopped(stop);
  co_return answer;
}

QCoro::Task<> CommunityStore::perform(Afterwards afterwards, Operation operation) {
  if (isBusy()) co_return;
  const QPointer<CommunityStore> self(this);
  isBusy.set(true);
  message.set(std::nullopt);
  operation_ = std::stop_source();
  const std::stop_token stop = operation_.get_token();
  std::optional<std::string> failure;
  try {
    auto running = operation(stop);
    co_await running;
    requireNotStopped(stop);
    if (afterwards == Afterwards::reload) {
      auto loading = load(page());
      co_await loading;
    }
  } catch (const platform::Cancelled&) {  // as asked for
  } catch (const std::exception& error) {
    failure = error.what();
  }
  if (!self) co_return;
  if (failure) message.set(failure);
  isBusy.set(false);
}

void CommunityStore::toggleVote(const CommunityPost& post) {
  setRelation(postPath(post.id) + "/vote", post.voted ? Relation::off : Relation::on);
}

void CommunityStore::toggleFollow(const CommunityCreator& creator) {
  setRelation(creatorPath(creator.id) + "/follow", creator.following ? Relation::off : Relation::on);
}

void CommunityStore::block(UUID creatorID) { setRelation(creatorPath(creatorID) + "/block", Relation::on); }

void CommunityStore::unblock(UUID creatorID) {
  setRelation(creatorPath(creatorID) + "/block", Relation::off);
}

void CommunityStore::deletePreview(UUID postID) {
  setRelation(postPath(postID), Relation::off, Answer::okOrNull);
}

void CommunityStore::setRelation(QString path, Relation relation, Answer answer) {
  perform(Afterwards::reload, [this, path = std::move(path), relation, answer](std::stop_token stop) {
    return sendRelation(path, relation, answer, std::move(stop));
  });
}

QCoro::Task<> CommunityStore::sendRelation(QString path, Relation relation, Answer answer,
                                           std::stop_token stop) {
  CommunityAPI::Request request{.method = relation == Relation::on ? "POST" : "DELETE",
                                .path = std::move(path)};
  auto sending = send(std::move(request), std::move(stop));
  const QByteArray bytes = co_await sending;
  const auto json = JSONValue::parse(bytes);
  if (answer == Answer::ok || !json.isNull()) decodeOK(json);
  stopPlayback();
}

void CommunityStore::saveProfile(Profile profile) {
  perform(Afterwards::reload, [this, profile = std::move(profile)](std::stop_token stop) {
    return post(
        "profile", encodeProfile(profile.handle, profile.displayName, profile.bio, profile.acceptedRules),
        [](const JSONValue& answer) { decodeCreator(answer); },
        "Profile sent for review. It will appear after approval.", std::move(stop));
  });
}

void CommunityStore::sendReport(Report report) {
  perform(Afterwards::reload, [this, report = std::move(report)](std::stop_token stop) {
    return post(
        "reports", encodeReport(report.creatorID, report.postID, report.reason, report.details),
        [](const JSONValue& answer) { decodeOK(answer); }, "Report received. Thank you for letting us know.",
        std::move(stop));
  });
}

QCoro::Task<> CommunityStore::post(QString path, QByteArray json, void (*check)(const JSONValue& answer),
                                   const char* told, std::stop_token stop) {
  CommunityAPI::Request request{.method = "POST", .path = std::move(path), .body = std::move(json)};
  auto sending = send(std::move(request), std::move(stop));
  const QByteArray answer = co_await sending;
  check(JSONValue::parse(answer));
  message.set(told);
}

void CommunityStore::renderPreview(Song song, AudioSamples samples) {
  perform(Afterwards::nothing, [this, song = std::move(song), samples = std::move(samples)](
                                   std::stop_token stop) { return render(song, samples, std::move(stop)); });
}

QCoro::Task<> CommunityStore::render(Song song, AudioSamples samples, std::stop_token stop) {
  if (!hasEverySample(song, samples))
    throw AccountAPIError(badRequest, "Reload the missing audio files before making a preview.");
  discardLocalPreview();
  const QPointer<CommunityStore> self(this);
  rendering_ = std::make_unique<PreviewFile>();
  std::exception_ptr error;
  try {
    auto rendering = exporter_.renderPreview(std::move(song), std::move(samples), rendering_->path(),
                                             previewSeconds, stop);
    co_await rendering;
  } catch (...) {
    error = std::current_exception();
  }
  if (!self) throw platform::Cancelled();
  auto file = std::move(rendering_);  // and away with it unless it is kept
  requireNotStopped(stop);
  if (error) std::rethrow_exception(error);
  preview_ = std::move(file);
  localPreview.set(preview_->path());
  message.set("Preview ready. Listen before you publish it.");
}

void CommunityStore::publishPreview(std::string title, std::string caption, bool ownsRights) {
  if (!localPreview()) return;
  perform(Afterwards::reload,
          [this, title = std::move(title), caption = std::move(caption), ownsRights](std::stop_token stop) {
            return publish(encodeNewPost(title, caption, ownsRights), std::move(stop));
          });
}

QCoro::Task<> CommunityStore::publish(QByteArray json, std::stop_token stop) {
  auto sending = sendPreview(api_, token_, std::move(json), audioToSend(preview_->path()), stop);
  co_await sending;
  requireNotStopped(stop);
  discardLocalPreview();
  message.set("Preview sent for review. Your project stays on this device.");
}

void CommunityStore::discardLocalPreview() {
  preview_.reset();
  localPreview.set(std::nullopt);
}

void CommunityStore::togglePlayback(UUID postID) {
  if (playingID() == postID) return stopPlayback();
  perform(Afterwards::nothing,
          [this, postID](std::stop_token stop) { return fetchAndPlay(postID, std::move(stop)); });
}

QCoro::Task<> CommunityStore::fetchAndPlay(UUID postID, std::stop_token stop) {
  stopPlayback();
  CommunityAPI::Request request{.path = postPath(postID) + "/audio"};
  auto fetching = send(std::move(request), std::move(stop));
  const QByteArray sound = co_await fetching;
  start(platform::AudioPlayer::fromBytes(sound, makeOutput_()), postID);
}

void CommunityStore::playLocalPreview() {
  if (!localPreview()) return;
  stopPlayback();
  try {
    start(platform::AudioPlayer::fromFile(*localPreview(), makeOutput_()), std::nullopt);
  } catch (const std::exception&) {
    message.set("The preview could not play. Try rendering it again.");
  }
}

void CommunityStore::start(std::unique_ptr<platform::AudioPlayer> player, std::optional<UUID> postID) {
  if (!player->prepare() || !player->play())
    throw AccountAPIError(serviceUnavailable, "Audio could not start.");
  player_ = std::move(player);
  playingID.set(postID);
  const std::chrono::duration<double> length(player_->duration() + playbackMargin);
  playbackEnd_.start(std::chrono::ceil<std::chrono::milliseconds>(length));
}

void CommunityStore::stopPlayback() {
  playbackEnd_.stop();
  if (player_) player_->stop();
  player_.reset();
  playingID.set(std::nullopt);
}

void CommunityStore::close() {
  operation_.request_stop();
  overtakeLoads();
  isLoading.set(false);
  stopPlayback();
  discardLocalPreview();
}

}  // namespace velmora
