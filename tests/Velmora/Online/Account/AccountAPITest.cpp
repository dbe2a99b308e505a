#include <gmock/gmock.h>

#include "Velmora/Online/Account/AccountAPI.h"
#include "tests/Velmora/Online/Account/OnlineTest.h"

namespace velmora {
namespace {

using platform::resultOf;

constexpr char unreachable[] = "Could not reach Velmora. Please try again.";
constexpr char okay[] = R"({"ok": false})";
const std::string customer =
    std::string(R"({"customer": {"id": ")") + testing::customerID + R"("}, "other": [1]})";
const std::string session = std::string(R"({"customer": {"id": ")") + testing::customerID +
                            R"("}, "sessionToken": "fresh", "expiresAt": "tomorrow, perhaps"})";

struct Operation {
  const char* request;
  const char* body;  ///< none has no token, too
  std::string answer;
  std::function<void(const AccountAPI&)> call;
  bool hasToken = true;
};
const Operation operations[] = {
    {"POST /api/v1/auth/password", R"({"password":"q\"ü","username":" ann "})", session,
     [](const auto& api) {
       const auto fresh = resultOf(api.signIn(AccountAPI::Account::existing, " ann ", "q\"ü"));
       EXPECT_EQ(fresh, (VelmoraSession{{*UUID::parse(testing::customerID)}, "fresh", "tomorrow, perhaps"}));
     },
     false},
    {"POST /api/v1/auth/register", R"({"password":"secret","username":"ann"})", session,
     [](const auto& api) { resultOf(api.signIn(AccountAPI::Account::created, "ann", "secret")); }, false},
    {"POST /api/v1/auth/sign-out", "", okay, [](const auto& api) { resultOf(api.signOut("token")); }},
    {"DELETE /api/v1/account", "", okay, [](const auto& api) { resultOf(api.deleteAccount("token")); }},
    {"GET /api/v1/me", "", customer,
     [](const auto& api) { EXPECT_EQ(resultOf(api.fetchMe("token")).id.text(), testing::customerID); }},
    {"POST /api/v1/activity", "", okay, [](const auto& api) { resultOf(api.recordActivity("token")); }},
    {"POST /api/v1/account/password", R"({"currentPassword":"old","newPassword":"new"})", session,
     [](const auto& api) {
       EXPECT_EQ(resultOf(api.changePassword("token", "old", "new")).sessionToken, "fresh");
     }},
};

class AccountAPITest : public testing::OnlineTest {
 protected:
  const AccountAPI api_{client_, service_.address()};
};

TEST_F(AccountAPITest, SendsEachOperationAsOneRequest) {
  for (const Operation& operation : operations) {
    SCOPED_TRACE(operation.request);
    for (const int status : {200, 299}) {
      service_.answer("", status, operation.answer);
      operation.call(api_);
    }
    const auto requests = service_.requests(std::string("^") + operation.request + "$");
    ASSERT_EQ(requests.size(), 2);
    EXPECT_EQ(requests[0].header("Accept"), "application/json");
    EXPECT_EQ(requests[0].header("Authorization"),
              operation.hasToken ? std::optional<std::string>("Bearer token") : std::nullopt);
    EXPECT_EQ(requests[0].body, operation.body);
    EXPECT_EQ(requests[0].header("Content-Type"),
              *operation.body ? std::optional<std::string>("application/json") : std::nullopt);
  }
  EXPECT_EQ(service_.requests().size(), std::size(operations) * 2);
}

TEST_F(AccountAPITest, TellsTheKindsOfFailureApart) {
  using ::testing::AllOf, ::testing::HasSubstr, ::testing::Property, ::testing::Not, ::testing::Throws,
      ::testing::ThrowsMessage;
  const auto refused = [](int status, const char* message) {
    return Throws<AccountAPIError>(
        AllOf(Property(&AccountAPIError::status, status), Property(&AccountAPIError::message, message)));
  };
  const struct {
    int status;
    const char* body;
    const char* message;
  } refusals[] = {{500, R"({"error": "Come back\nlater <b>.", "ok": true})", "Come back\nlater <b>."},
                  {500, "<html>", unreachable},
                  {503, R"({"error": 5})", unreachable},
                  {401, R"({"error": "Who?"})", "Who?"},
                  {304, "", unreachable}};
  for (const Operation& operation : operations) {
    SCOPED_TRACE(operation.request);
    const auto call = [&] { operation.call(api_); };
    for (const auto& refusal : refusals) {
      service_.answer("", refusal.status, refusal.body);
      EXPECT_THAT(call, refused(refusal.status, refusal.message));
    }
    service_.redirect("", "/api/v1/other");
    EXPECT_THAT(call, refused(302, unreachable));

    for (const char* unfit :
         {"", "[]", "{}", R"({"ok": "true"})", R"({"customer": {"id": "7"}})", "<html>"}) {
      service_.answer("", 200, unfit);
      EXPECT_THAT(call, ThrowsMessage<DecodingError>(HasSubstr("The answer of the service can't be read: ")));
    }
    service_.answer("", 200, "null");
    if (operation.request == std::string("POST /api/v1/auth/sign-out"))
      call();
    else
      EXPECT_THROW(call(), DecodingError);

    service_.answer("", 200, operation.answer);
    service_.cut("");
    EXPECT_THROW(call(), platform::HTTPError);
  }
  EXPECT_TRUE(service_.requests("other").empty());
  const auto sent = service_.requests().size();
  EXPECT_THROW(resultOf(api_.signIn(AccountAPI::Account::existing, "\xff", "")), std::runtime_error);
  EXPECT_EQ(service_.requests().size(), sent);
}

}  // namespace
}  // namespace velmora
