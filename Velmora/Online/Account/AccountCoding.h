#pragma once

#include <QByteArray>
#include <map>
#include <optional>
#include <string>
#include <variant>

#include "Velmora/Online/Account/AccountRecords.h"
#include "Velmora/Online/Account/JSONDecoding.h"

namespace velmora {

/// Text that can't be sent or stored; `what` is one line for the user.
struct EncodingError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// The records of the account as JSON. Each `decode` throws `DecodingError`, each `encode` `EncodingError`.

VelmoraCustomer decodeCustomer(const JSONValue& json);
VelmoraSession decodeSession(const JSONValue& json);
Me decodeMe(const JSONValue& json);
OK decodeOK(const JSONValue& json);
/// The text of a failure's body; none in whatever isn't one.
std::optional<ErrorBody> decodeErrorBody(const QByteArray& body);

/// Without the optional fields that are absent.
QByteArray encodeSession(const VelmoraSession& session);
/// One flat object.
using JSONFields = std::map<std::string, std::variant<bool, std::string>>;
QByteArray encodeFields(const JSONFields& fields);

}  // namespace velmora
