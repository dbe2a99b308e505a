#pragma once

#include <QCryptographicHash>

#include "Platform/Services/UpdateFeed.h"

namespace velmora::testing {

inline constexpr platform::UpdateSeed sampleSeed{3, 1, 4, 1, 5, 9, 2, 6};

/// An offer of version 0.2.0 with this content.
inline platform::UpdateOffer sampleOffer(const QByteArray& program = "hello") {
  return {.application = "com.example.Program",
          .channel = "stable-test",
          .sequence = 7,
          .version = "0.2.0",
          .expiry = QDateTime({2030, 1, 31}, {12, 0}, Qt::UTC),
          .size = program.size(),
          .hash = QCryptographicHash::hash(program, QCryptographicHash::Sha256),
          .download = QUrl("https://velmora.example/program"),
          .page = QUrl("https://velmora.example/page")};
}

}  // namespace velmora::testing
