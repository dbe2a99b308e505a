#include "Velmora/Online/Account/AccountCoding.h"

#include <nlohmann/json.hpp>

namespace velmora {
namespace {

using Object = nlohmann::json;

QByteArray bytes(const Object& object) {
  try {
    return QByteArray::fromStdString(object.dump());
  } catch (const Object::exception&) {
    throw EncodingError("The text can't be sent: it isn't valid UTF-8.");
  }
}

void set(Object& object, const char* key, const std::optional<std::string>& text) {
  if (text) object[key] = *text;
}

}  // namespace

VelmoraCustomer decodeCustomer(const JSONValue& json) {
  return {.id = json["id"].uuid(),
          .username = json.optional("username", &JSONValue::text),
          .email = json.optional("email", &JSONValue::text),
          .displayName = json.optional("displayName", &JSONValue::text)};
}

VelmoraSession decodeSession(const JSONValue& json) {
  return {.customer = decodeCustomer(json["customer"]),
          .sessionToken = json["sessionToken"].text(),
          .expiresAt = json["expiresAt"].text(),
          .appleUserID = json.optional("appleUserID", &JSONValue::text)};
}

Me decodeMe(const JSONValue& json) { return {.customer = decodeCustomer(json["customer"])}; }

OK decodeOK(const JSONValue& json) { return {.ok = json["ok"].boolean()}; }

std::optional<ErrorBody> decodeErrorBody(const QByteArray& body) {
  try {
    return ErrorBody{JSONValue::parse(body)["error"].text()};
  } catch (const DecodingError&) {
    return {};
  }
}

QByteArray encodeSession(const VelmoraSession& session) {
  Object customer{{"id", session.customer.id.text()}};
  set(customer, "username", session.customer.username);
  set(customer, "email", session.customer.email);
  set(customer, "displayName", session.customer.displayName);
  Object object{
      {"customer", customer}, {"sessionToken", session.sessionToken}, {"expiresAt", session.expiresAt}};
  set(object, "appleUserID", session.appleUserID);
  return bytes(object);
}

QByteArray encodeFields(const JSONFields& fields) {
  Object object = Object::object();
  for (const auto& [key, value] : fields)
    std::visit([&, &name = key](const auto& content) { object[name] = content; }, value);
  return bytes(object);
}

}  // namespace velmora
