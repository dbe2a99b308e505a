#include "VelmoraCore/Song/SongHash.h"

#include <cstdint>

#include "VelmoraCore/Song/SongFields.h"

namespace velmora {
namespace {

std::size_t combined(std::size_t seed, std::size_t next) {
  const std::uint64_t mixed = (seed ^ (next + 0x9E3779B97F4A7C15U + (seed << 6) + (seed >> 2)));
  return static_cast<std::size_t>((mixed ^ (mixed >> 29)) * 0xBF58476D1CE4E5B9U);
}

template <class T>
std::size_t hashOf(const T& value) {
  if constexpr (fields::Record<T> || fields::Tagged<T>) {
    return hashValue(value);
  } else if constexpr (fields::isOptional<T>) {
    return value ? combined(1, hashOf(*value)) : 0;
  } else if constexpr (fields::isList<T>) {
    std::size_t hash = value.size();
    for (const auto& item : value) hash = combined(hash, hashOf(item));
    return hash;
  } else {
    return std::hash<T>()(value);  // zero for a zero of either sign
  }
}

template <fields::Record T>
std::size_t hashRecord(const T& record) {
  std::size_t hash = 0;
  fields::forEach(fields::fieldsOf<T>,
                  [&](const auto& field) { hash = combined(hash, hashOf(record.*field.member)); });
  return hash;
}

template <fields::Tagged T>
std::size_t hashTagged(const T& value) {
  std::size_t hash = 0;
  std::size_t position = 0;
  fields::forEach(fields::casesOf<T>, [&]<class Case>(const Case& one) {
    ++position;
    if (!(value.*one.holds)()) return;
    hash = position;
    if constexpr (!std::is_void_v<typename Case::Type>) hash = combined(hash, hashOf(one.payload(value)));
  });
  return hash;
}

}  // namespace

std::size_t hashValue(const Song& song) { return hashRecord(song); }
std::size_t hashValue(const Track& track) { return hashRecord(track); }
std::size_t hashValue(const TrackKind& kind) { return hashTagged(kind); }
std::size_t hashValue(const FXSettings& fx) { return hashRecord(fx); }
std::size_t hashValue(const LoopRange& loop) { return hashRecord(loop); }
std::size_t hashValue(const Pattern& pattern) { return hashRecord(pattern); }
std::size_t hashValue(const Note& note) { return hashRecord(note); }
std::size_t hashValue(const Clip& clip) { return hashRecord(clip); }
std::size_t hashValue(const ClipSource& source) { return hashTagged(source); }
std::size_t hashValue(const AudioAsset& asset) { return hashRecord(asset); }

}  // namespace velmora
