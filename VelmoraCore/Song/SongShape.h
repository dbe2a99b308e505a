#pragma once

#include <array>
#include <span>
#include <string_view>

#include "VelmoraCore/Song/JSONScalar.h"
#include "VelmoraCore/Song/SongFields.h"

/// The lists of fields as plain tables, so that one small reader can fill any record while the text streams
/// by.
namespace velmora::shape {

using fields::Presence;

struct Shape;

/// A place for one value: a field of an object or the next element of an array. `owner` is what the shape
/// that holds the slot is filled into.
struct Slot {
  std::string_view name;    ///< the key, or what one element is called
  std::string_view wanted;  ///< what the value has to be
  Presence presence = Presence::required;

  const Shape* content = nullptr;         ///< the shape of the object or array; null for a scalar
  void* (*enter)(void* owner) = nullptr;  ///< with content: makes room for it, in place of what was there
  bool (*assign)(void* owner, const Scalar& scalar) = nullptr;  ///< without: reads it; false if it isn't fit
  void (*leaveOut)(void* owner) = nullptr;                      ///< where it isn't required: fills in for it
};

/// An object or an array.
struct Shape {
  enum class Kind : std::uint8_t { array, record, tagged };

  Kind kind;
  std::span<const Slot> slots;  ///< of an array: one, for each element

  bool isArray() const { return kind == Kind::array; }
};

/// The shape of a record, a tagged value or a list.
template <class T>
struct ShapeOf {
  static const Shape shape;
};

template <class T>
struct Unwrapped {
  using Type = T;
};
template <class T>
struct Unwrapped<std::optional<T>> {
  using Type = T;
};

template <class T>
inline constexpr bool isContent = fields::Record<T> || fields::Tagged<T> || fields::isList<T>;

/// How the field at `index` of a record is read.
template <class Record, std::size_t index>
struct FieldAccess {
  static constexpr auto field = std::get<index>(fields::fieldsOf<Record>);
  using Stored = typename decltype(field)::Type;
  using Value = typename Unwrapped<Stored>::Type;

  static Stored& stored(void* owner) { return static_cast<Record*>(owner)->*field.member; }
  static Value& value(void* owner) {
    if constexpr (fields::isOptional<Stored>) {
      return stored(owner).emplace();
    } else {
      return stored(owner);
    }
  }

  static void* enter(void* owner) {
    if constexpr (fields::isList<Stored>) {
      stored(owner) = {};
      return &stored(owner).write();
    } else {
      return &value(owner);
    }
  }
  static bool assign(void* owner, const Scalar& scalar) { return read(scalar, value(owner)); }
  static void leaveOut(void* owner) {
    if constexpr (fields::isOptional<Stored>) {
      stored(owner).reset();
    } else {
      stored(owner) = UUID::random();
    }
  }

  static constexpr Slot slot() {
    Slot slot{.name = field.key, .wanted = wanted<Value>, .presence = field.presence};
    if constexpr (isContent<Value>) {
      slot.wanted = fields::isList<Value> ? "an array" : "an object";
      slot.content = &ShapeOf<Value>::shape;
      slot.enter = &enter;
    } else {
      slot.assign = &assign;
    }
    if constexpr (field.presence != Presence::required) slot.leaveOut = &leaveOut;
    return slot;
  }
};

/// How the case at `index` of a tagged value is read; the value itself is the owner on both levels.
template <class Tagged, std::size_t index>
struct CaseAccess {
  static constexpr auto one = std::get<index>(fields::casesOf<Tagged>);
  using Payload = typename decltype(one)::Type;

  static void* enter(void* owner) {
    if constexpr (std::is_void_v<Payload>) *static_cast<Tagged*>(owner) = one.make();
    return owner;
  }
  static bool assign(void* owner, const Scalar& scalar) {
    Payload payload{};
    if (!read(scalar, payload)) return false;
    *static_cast<Tagged*>(owner) = one.make(payload);
    return true;
  }

  static constexpr auto payloadSlots() {
    if constexpr (std::is_void_v<Payload>) {
      return std::array<Slot, 0>();
    } else {
      return std::array{Slot{.name = fields::payloadKey, .wanted = wanted<Payload>, .assign = &assign}};
    }
  }
  static constexpr auto slots = payloadSlots();
  static constexpr Shape content{Shape::Kind::record, slots};

  static constexpr Slot slot() {
    return {.name = one.key, .wanted = "an object", .content = &content, .enter = &enter};
  }
};

template <class T>
inline constexpr std::string_view elementName = "";
template <>
inline constexpr std::string_view elementName<Track> = "track";
template <>
inline constexpr std::string_view elementName<Pattern> = "pattern";
template <>
inline constexpr std::string_view elementName<Note> = "note";
template <>
inline constexpr std::string_view elementName<Clip> = "clip";
template <>
inline constexpr std::string_view elementName<AudioAsset> = "audio asset";

template <class List>
struct ElementAccess {
  using Element = typename List::value_type;

  static void* append(void* items) { return &static_cast<std::vector<Element>*>(items)->emplace_back(); }
  static constexpr Slot slot() {
    return {.name = elementName<Element>,
            .wanted = "an object",
            .content = &ShapeOf<Element>::shape,
            .enter = &append};
  }
};

template <class T>
constexpr auto makeSlots() {
  if constexpr (fields::isList<T>) {
    return std::array{ElementAccess<T>::slot()};
  } else if constexpr (fields::Record<T>) {
    return []<std::size_t... index>(std::index_sequence<index...>) {
      return std::array{FieldAccess<T, index>::slot()...};
    }
    (std::make_index_sequence<fields::count<decltype(fields::fieldsOf<T>)>>());
  } else {
    return []<std::size_t... index>(std::index_sequence<index...>) {
      return std::array{CaseAccess<T, index>::slot()...};
    }
    (std::make_index_sequence<fields::count<decltype(fields::casesOf<T>)>>());
  }
}

template <class T>
inline constexpr auto slotsOf = makeSlots<T>();

template <class T>
constexpr Shape ShapeOf<T>::shape{fields::isList<T>   ? Shape::Kind::array
                                  : fields::Record<T> ? Shape::Kind::record
                                                      : Shape::Kind::tagged,
                                  slotsOf<T>};

}  // namespace velmora::shape
