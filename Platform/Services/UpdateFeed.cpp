#include "Platform/Services/UpdateFeed.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QRegularExpression>
#include <QVersionNumber>
#include <algorithm>
#include <optional>
#include <sodium.h>
#include <string>

namespace platform {

namespace {

constexpr qsizetype signatureLine = 89;  // 64 bytes in base 64, and the line's end
constexpr qint64 largestSequence = qint64{1} << 53;

static_assert(crypto_sign_PUBLICKEYBYTES == std::tuple_size_v<UpdateKey>);
static_assert(crypto_sign_SEEDBYTES == std::tuple_size_v<UpdateSeed>);

using Signature = std::array<unsigned char, crypto_sign_BYTES>;

void prepareSodium() {
  if (sodium_init() < 0) throw UpdateFeedError("Signatures can't be checked on this computer.");
}

QByteArray toBase64(const unsigned char* bytes, std::size_t count) {
  return QByteArray(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(count)).toBase64();
}

/// Exactly one text stands for some bytes: nothing beside it is taken. (Decoders are more lenient.)
template <std::size_t count>
std::optional<std::array<unsigned char, count>> fromBase64(const QByteArray& text) {
  const QByteArray decoded = QByteArray::fromBase64(text);
  if (decoded.size() != count || decoded.toBase64() != text) return std::nullopt;
  std::array<unsigned char, count> bytes;
  std::ranges::copy(decoded, bytes.begin());
  return bytes;
}

const unsigned char* bytesOf(QByteArrayView view) {
  return reinterpret_cast<const unsigned char*>(view.data());
}

/// The signed bytes of a feed.
QByteArray verified(const QByteArray& feed, const UpdateKey& key) {
  if (feed.size() > UpdateFeed::limit) throw UpdateFeedError("The update information is too long.");
  prepareSodium();
  const auto signature = feed.size() > signatureLine && feed[signatureLine - 1] == '\n'
                             ? fromBase64<crypto_sign_BYTES>(feed.first(signatureLine - 1))
                             : std::nullopt;
  QByteArray text = feed.mid(signatureLine);
  if (!signature ||
      crypto_sign_verify_detached(signature->data(), bytesOf(text),
                                  static_cast<unsigned long long>(text.size()), key.data()) != 0)
    throw UpdateFeedError("The update information isn't signed as it should be.");
  return text;
}

/// Reads the fields of the signed object, each of which has to be there.
class Fields {
 public:
  explicit Fields(const QJsonObject& object) : object_(object) {}

  QString text(const char* name) const {
    QString value = object_[QLatin1String(name)].toString();
    require(!value.isEmpty() && value.size() <= 1000, name);
    return value;
  }
  QString version(const char* name) const {
    static const QRegularExpression form("\\A[0-9]{1,5}(\\.[0-9]{1,5}){0,3}\\z");
    QString value = text(name);
    require(form.match(value).hasMatch(), name);
    return value;
  }
  qint64 number(const char* name, qint64 most) const {
    const QJsonValue value = object_[QLatin1String(name)];
    const qint64 number = value.toInteger();
    require(number >= 1 && number <= most, name);
    return number;
  }
  QDateTime moment(const char* name) const {
    const QString value = text(name);
    QDateTime moment = QDateTime::fromString(value, Qt::ISODate);
    require(moment.isValid() && value.endsWith('Z'), name);
    return moment;
  }
  QByteArray hash(const char* name) const {
    static const QRegularExpression form("\\A[0-9a-f]{64}\\z");
    const QString value = text(name);
    require(form.match(value).hasMatch(), name);
    return QByteArray::fromHex(value.toLatin1());
  }
  /// Plain HTTP is for tries on the own computer; whoever sends the request sees to that.
  QUrl address(const char* name, bool mayBePlain) const {
    QUrl url(text(name), QUrl::StrictMode);
    const bool isWeb = url.scheme() == "https" || (mayBePlain && url.scheme() == "http");
    require(url.isValid() && isWeb && !url.host().isEmpty() && url.userInfo().isEmpty(), name);
    return url;
  }

 private:
  static void require(bool isFit, const char* name) {
    if (isFit) return;
    throw UpdateFeedError(std::string("The update information has no usable \"").append(name).append("\"."));
  }

  const QJsonObject& object_;
};

UpdateOffer parsed(const QByteArray& text) {
  const QJsonObject object = QJsonDocument::fromJson(text).object();
  const Fields fields(object);
  return {.application = fields.text("application"),
          .channel = fields.text("channel"),
          .sequence = fields.number("sequence", largestSequence),
          .version = fields.version("version"),
          .expiry = fields.moment("expiry"),
          .size = fields.number("size", UpdateFeed::largestSize),
          .hash = fields.hash("sha256"),
          .download = fields.address("download", true),
          .page = fields.address("page", false)};
}

QByteArray jsonText(const UpdateOffer& offer) {
  const QJsonObject object{{"application", offer.application},
                           {"channel", offer.channel},
                           {"sequence", offer.sequence},
                           {"version", offer.version},
                           {"expiry", offer.expiry.toUTC().toString(Qt::ISODate)},
                           {"size", offer.size},
                           {"sha256", QString::fromLatin1(offer.hash.toHex())},
                           {"download", offer.download.toString(QUrl::FullyEncoded)},
                           {"page", offer.page.toString(QUrl::FullyEncoded)}};
  return QJsonDocument(object).toJson();
}

struct KeyPair {
  UpdateKey open{};
  std::array<unsigned char, crypto_sign_SECRETKEYBYTES> secret{};

  explicit KeyPair(const UpdateSeed& seed) {
    prepareSodium();
    crypto_sign_seed_keypair(open.data(), secret.data(), seed.data());
  }
};

}  // namespace

UpdateOffer UpdateFeed::read(const QByteArray& feed, const UpdateKey& key) {
  return parsed(verified(feed, key));
}

QByteArray UpdateFeed::write(const UpdateOffer& offer, const UpdateSeed& seed) {
  const KeyPair keys(seed);
  const QByteArray text = jsonText(offer);
  Signature signature;
  crypto_sign_detached(signature.data(), nullptr, bytesOf(text), static_cast<unsigned long long>(text.size()),
                       keys.secret.data());
  QByteArray feed = toBase64(signature.data(), signature.size()) + '\n' + text;
  read(feed, keys.open);
  return feed;
}

bool UpdateFeed::isNewer(const UpdateOffer& offer, const UpdateRecipient& recipient) {
  if (offer.application != recipient.application || offer.channel != recipient.channel)
    throw UpdateFeedError("The update information is for another program.");
  if (offer.sequence < recipient.lastSequence)
    throw UpdateFeedError("The update information is older than what was known before.");
  if (offer.expiry <= recipient.now) throw UpdateFeedError("The update information is out of date.");
  const auto number = [](const QString& version) { return QVersionNumber::fromString(version).normalized(); };
  return number(offer.version) > number(recipient.version);
}

UpdateSeed makeUpdateSeed() {
  prepareSodium();
  UpdateSeed seed;
  randombytes_buf(seed.data(), seed.size());
  return seed;
}

UpdateKey publicKey(const UpdateSeed& seed) { return KeyPair(seed).open; }

QByteArray keyText(const std::array<unsigned char, 32>& key) { return toBase64(key.data(), key.size()); }

std::array<unsigned char, 32> readKeyText(const QByteArray& text) {
  prepareSodium();
  const auto key = fromBase64<32>(text.trimmed());
  if (!key) throw UpdateFeedError("Not a key.");
  return *key;
}

}  // namespace platform
