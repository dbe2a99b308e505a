#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QUrl>
#include <array>
#include <stdexcept>

namespace platform {

/// What is wrong with a feed or a key: one line in words.
struct UpdateFeedError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// An Ed25519 public key, by which a program knows its own feeds.
using UpdateKey = std::array<unsigned char, 32>;

/// The secret that makes the signatures of one public key.
using UpdateSeed = std::array<unsigned char, 32>;

/// One version of a program that a feed offers.
struct UpdateOffer {
  QString application;  ///< the desktop id of the program
  QString channel;      ///< what this copy of the program follows, such as "stable-x86_64"
  qint64 sequence = 0;  ///< rises with every feed of a channel; from 1 to 2^53
  QString version;      ///< one to four numbers with dots between them
  QDateTime expiry;     ///< UTC; from then on the feed counts for nothing
  qint64 size = 0;      ///< of the program's file, in bytes
  QByteArray hash;      ///< its SHA-256, 32 bytes
  QUrl download;        ///< where the file is
  QUrl page;            ///< HTTPS; where people get it

  bool operator==(const UpdateOffer&) const = default;
};

/// Whom an offer has to fit.
struct UpdateRecipient {
  QString application;
  QString channel;
  QString version;
  qint64 lastSequence = 0;  ///< the highest that was ever taken
  QDateTime now;
};

/// A feed is a line with the signature in base 64, then the JSON text that it signs, byte for byte.
class UpdateFeed {
 public:
  static constexpr qint64 limit = 16 << 10;               ///< bytes of a feed
  static constexpr qint64 largestSize = qint64{4} << 30;  ///< bytes of a program

  /// Looks at nothing but the signature until that is right. Throws `UpdateFeedError`.
  static UpdateOffer read(const QByteArray& feed, const UpdateKey& key);

  /// Throws `UpdateFeedError` if the offer is one that nobody could read.
  static QByteArray write(const UpdateOffer& offer, const UpdateSeed& seed);

  /// Whether the offer is newer than what the recipient has. Throws `UpdateFeedError` if it is none for the
  /// recipient: of another program, too old, or older than one that was taken before.
  static bool isNewer(const UpdateOffer& offer, const UpdateRecipient& recipient);
};

/// Keys in base 64, as they stand in files.
UpdateSeed makeUpdateSeed();
UpdateKey publicKey(const UpdateSeed& seed);
QByteArray keyText(const std::array<unsigned char, 32>& key);
/// Reads a key or a seed; throws `UpdateFeedError`.
std::array<unsigned char, 32> readKeyText(const QByteArray& text);

}  // namespace platform
