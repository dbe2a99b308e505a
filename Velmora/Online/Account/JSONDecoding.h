#pragma once

#include <QByteArray>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "VelmoraCore/Song/SongJSON.h"
#include "VelmoraCore/Song/UUID.h"

namespace velmora {

/// A value within a JSON document that others wrote, read strictly: what is missing or of another type throws
/// `DecodingError`, whose one line names the place ("posts[3].creator.id"). Keys nobody asks for are ignored,
/// null counts as missing. Cheap to copy; a copy keeps the document alive.
class JSONValue {
 public:
  /// The whole document. `name` begins the sentence of every failure. Throws `DecodingError` for what isn't
  /// JSON in UTF-8 or is nested deeper than any record of ours.
  static JSONValue parse(const QByteArray& bytes, std::string name = "The answer of the service");

  bool isNull() const;
  bool boolean() const;
  std::int64_t integer() const;  ///< of a number without a fraction
  std::string text() const;
  UUID uuid() const;

  /// The required field of an object.
  JSONValue operator[](const char* key) const;

  /// An optional field, decoded: `value.optional("title", &JSONValue::text)`.
  template <class Decode>
  auto optional(const char* key, Decode decode) const {
    const std::optional<JSONValue> found = find(key);
    return found ? std::optional(std::invoke(decode, *found)) : std::nullopt;
  }

  /// The elements of an array, each decoded: `value["posts"].list(decodePost)`.
  template <class Decode>
  auto list(Decode decode) const {
    std::vector<std::decay_t<std::invoke_result_t<Decode, const JSONValue&>>> decoded;
    const std::size_t count = size();
    decoded.reserve(count);
    for (std::size_t index = 0; index < count; ++index) decoded.push_back(std::invoke(decode, at(index)));
    return decoded;
  }

 private:
  JSONValue(std::string name, std::shared_ptr<const void> node)
      : name_(std::move(name)), node_(std::move(node)) {}

  std::optional<JSONValue> find(const char* key) const;
  std::size_t size() const;
  JSONValue at(std::size_t index) const;
  [[noreturn]] void fail(const std::string& fault) const;

  std::string name_;
  std::shared_ptr<const void> node_;  // the library's value, and with it the whole document
  std::string path_;                  // from the document's root; empty there
};

}  // namespace velmora
