#include "Velmora/Online/Account/JSONDecoding.h"

#include <cmath>
#include <nlohmann/json.hpp>

namespace velmora {
namespace {

using nlohmann::json;

constexpr int deepest = 32;  // no record goes down further than six

const json& value(const std::shared_ptr<const void>& node) { return *static_cast<const json*>(node.get()); }

/// What a number without a fraction says, in whichever way it was written.
std::optional<std::int64_t> wholeNumber(const json& number) {
  constexpr double limit = 0x1p63;
  if (number.is_number_unsigned() && number.get<std::uint64_t>() > INT64_MAX) return {};
  if (number.is_number_integer()) return number.get<std::int64_t>();
  if (!number.is_number_float()) return {};
  const auto written = number.get<double>();
  const bool isWhole = std::trunc(written) == written && written >= -limit && written < limit;
  return isWhole ? std::optional(static_cast<std::int64_t>(written)) : std::nullopt;
}

}  // namespace

JSONValue JSONValue::parse(const QByteArray& bytes, std::string name) {
  const auto limitDepth = [&name](int depth, json::parse_event_t, const json&) {
    if (depth > deepest) throw DecodingError(name + " can't be read: it is nested too deeply.");
    return true;
  };
  try {
    auto document = std::make_shared<const json>(json::parse(bytes.begin(), bytes.end(), limitDepth));
    return {std::move(name), std::move(document)};
  } catch (const json::parse_error& error) {
    throw DecodingError(name + " can't be read: it isn't valid JSON (byte " + std::to_string(error.byte) +
                        ").");
  } catch (const json::exception&) {
    throw DecodingError(name + " can't be read: it holds a number that is too large.");
  }
}

bool JSONValue::isNull() const { return value(node_).is_null(); }

bool JSONValue::boolean() const {
  if (!value(node_).is_boolean()) fail("isn't true or false");
  return value(node_).get<bool>();
}

std::int64_t JSONValue::integer() const {
  const auto number = wholeNumber(value(node_));
  if (!number) fail("isn't a whole number");
  return *number;
}

std::string JSONValue::text() const {
  if (!value(node_).is_string()) fail("isn't a text");
  return value(node_).get<std::string>();
}

UUID JSONValue::uuid() const {
  const auto id = UUID::parse(text());
  if (!id) fail("isn't an identifier");
  return *id;
}

JSONValue JSONValue::operator[](const char* key) const {
  auto found = find(key);
  if (found) return *std::move(found);
  JSONValue missing(name_, nullptr);
  missing.path_ = path_.empty() ? key : path_ + '.' + key;
  missing.fail("is missing");
}

std::optional<JSONValue> JSONValue::find(const char* key) const {
  const json& object = value(node_);
  if (!object.is_object()) fail("isn't an object");
  const auto found = object.find(key);
  if (found == object.end() || found->is_null()) return {};
  JSONValue field(name_, std::shared_ptr<const void>(node_, &*found));
  field.path_ = path_.empty() ? key : path_ + '.' + key;
  return field;
}

std::size_t JSONValue::size() const {
  if (!value(node_).is_array()) fail("isn't a list");
  return value(node_).size();
}

JSONValue JSONValue::at(std::size_t index) const {
  JSONValue element(name_, std::shared_ptr<const void>(node_, &value(node_)[index]));
  element.path_ = path_ + '[' + std::to_string(index) + ']';
  return element;
}

void JSONValue::fail(const std::string& fault) const {
  throw DecodingError(name_ + " can't be read: " + (path_.empty() ? "it" : '"' + path_ + '"') + ' ' + fault +
                      '.');
}

}  // namespace velmora
