#pragma once

#include <optional>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "VelmoraCore/Song/Song.h"

/// The fields of every record of the document, each listed once: encoding, decoding and hashing all read
/// these lists.
namespace velmora::fields {

/// What an absent key means on reading.
enum class Presence {
  required,   ///< an error
  optional,   ///< an empty value, which isn't written either
  generated,  ///< a fresh id
};

template <class T>
inline constexpr bool isOptional = false;
template <class T>
inline constexpr bool isOptional<std::optional<T>> = true;

template <class T>
inline constexpr bool isList = false;
template <class T>
inline constexpr bool isList<SharedList<T>> = true;

/// One field of a record and its key in the text.
template <class Record, class Value>
struct Field {
  std::string_view key;
  Value Record::*member;
  Presence presence;

  using Type = Value;
  constexpr Field(std::string_view name, Value Record::*place,
                  Presence absence = isOptional<Value> ? Presence::optional : Presence::required)
      : key(name), member(place), presence(absence) {}
};

/// One case of a tagged value: its key, its test, its maker, and what it carries if it carries something.
template <class Tagged, class Payload>
struct Case {
  std::string_view key;
  bool (Tagged::*holds)() const;
  Tagged (*make)(Payload);
  std::remove_cvref_t<Payload> (*payload)(const Tagged&);

  using Type = std::remove_cvref_t<Payload>;
};

template <class Tagged>
struct Case<Tagged, void> {
  std::string_view key;
  bool (Tagged::*holds)() const;
  Tagged (*make)();

  using Type = void;
};

/// The key under which a case keeps what it carries.
inline constexpr std::string_view payloadKey = "_0";

inline SynthPreset presetOf(const TrackKind& kind) { return kind.preset().value_or(SynthPreset::miniSynth); }
inline UUID sourceID(const ClipSource& source) { return source.id; }

// Keys stand in the order in which they are written: sorted by name.

template <class Record>
inline constexpr auto fieldsOf = std::tuple<>();

template <>
inline constexpr auto fieldsOf<Song> = std::tuple(Field("audioAssets", &Song::audioAssets),    //
                                                  Field("bpm", &Song::bpm),                    //
                                                  Field("clips", &Song::clips),                //
                                                  Field("id", &Song::id),                      //
                                                  Field("loop", &Song::loop),                  //
                                                  Field("masterVolume", &Song::masterVolume),  //
                                                  Field("name", &Song::name),                  //
                                                  Field("patterns", &Song::patterns),          //
                                                  Field("tracks", &Song::tracks));

template <>
inline constexpr auto fieldsOf<Track> = std::tuple(Field("color", &Track::color),                          //
                                                   Field("fx", &Track::fx),                                //
                                                   Field("id", &Track::id),                                //
                                                   Field("isMuted", &Track::isMuted),                      //
                                                   Field("isSoloed", &Track::isSoloed),                    //
                                                   Field("kind", &Track::kind),                            //
                                                   Field("name", &Track::name),                            //
                                                   Field("pan", &Track::pan),                              //
                                                   Field("selectedPatternID", &Track::selectedPatternID),  //
                                                   Field("volume", &Track::volume));

template <>
inline constexpr auto fieldsOf<FXSettings> = std::tuple(Field("delayMix", &FXSettings::delayMix),      //
                                                        Field("highGainDB", &FXSettings::highGainDB),  //
                                                        Field("lowGainDB", &FXSettings::lowGainDB),    //
                                                        Field("midGainDB", &FXSettings::midGainDB),    //
                                                        Field("reverbMix", &FXSettings::reverbMix));

template <>
inline constexpr auto fieldsOf<LoopRange> = std::tuple(Field("endBeat", &LoopRange::endBeat),  //
                                                       Field("startBeat", &LoopRange::startBeat));

template <>
inline constexpr auto fieldsOf<Pattern> = std::tuple(Field("id", &Pattern::id),                    //
                                                     Field("lengthBeats", &Pattern::lengthBeats),  //
                                                     Field("name", &Pattern::name),                //
                                                     Field("notes", &Pattern::notes),              //
                                                     Field("trackID", &Pattern::trackID));

template <>
inline constexpr auto fieldsOf<Note> = std::tuple(Field("durationBeats", &Note::durationBeats),  //
                                                  Field("id", &Note::id, Presence::generated),   //
                                                  Field("pitch", &Note::pitch),                  //
                                                  Field("startBeat", &Note::startBeat),          //
                                                  Field("velocity", &Note::velocity));

template <>
inline constexpr auto fieldsOf<Clip> = std::tuple(Field("id", &Clip::id),                    //
                                                  Field("lengthBeats", &Clip::lengthBeats),  //
                                                  Field("source", &Clip::source),            //
                                                  Field("startBeat", &Clip::startBeat),      //
                                                  Field("trackID", &Clip::trackID));

template <>
inline constexpr auto fieldsOf<AudioAsset> = std::tuple(Field("channelCount", &AudioAsset::channelCount),  //
                                                        Field("fileName", &AudioAsset::fileName),          //
                                                        Field("frameCount", &AudioAsset::frameCount),      //
                                                        Field("id", &AudioAsset::id),                      //
                                                        Field("name", &AudioAsset::name),                  //
                                                        Field("sampleRate", &AudioAsset::sampleRate));

template <class Tagged>
inline constexpr auto casesOf = std::tuple<>();

template <>
inline constexpr auto casesOf<TrackKind> =
    std::tuple(Case<TrackKind, void>{"audio", &TrackKind::isAudio, &TrackKind::audio},
               Case<TrackKind, void>{"drums", &TrackKind::isDrums, &TrackKind::drums},
               Case<TrackKind, SynthPreset>{"synth", &TrackKind::isSynth, &TrackKind::synth, &presetOf});

template <>
inline constexpr auto casesOf<ClipSource> = std::tuple(
    Case<ClipSource, const UUID&>{"audio", &ClipSource::isAudio, &ClipSource::audio, &sourceID},
    Case<ClipSource, const UUID&>{"pattern", &ClipSource::isPattern, &ClipSource::pattern, &sourceID});

template <class List>
inline constexpr std::size_t count = std::tuple_size_v<std::remove_cvref_t<List>>;

template <class T>
concept Record = count<decltype(fieldsOf<T>)>
!= 0;

template <class T>
concept Tagged = count<decltype(casesOf<T>)>
!= 0;

/// Calls `visit` with every field of a record, or every case of a tagged value, in order.
template <class List, class Visitor>
constexpr void forEach(const List& list, Visitor&& visit) {
  std::apply([&](const auto&... entry) { (visit(entry), ...); }, list);
}

}  // namespace velmora::fields
