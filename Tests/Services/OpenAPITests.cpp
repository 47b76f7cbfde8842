// The documents that describe the services, held against what the services answer.
#include "Tests/Services/ServicesTest.h"

namespace hlv::services {
namespace {

using testing::Json;

/// As much of a schema as says which members there are and of what type.
class Document {
 public:
  explicit Document(Json json) : json_(std::move(json)) {}

  /// What is wrong with an answer to `operation` at `path`, or an empty string.
  std::string wrongWith(const std::string& path, const std::string& operation,
                        const Heard& heard) const {
    const auto& responses = json_.at("paths").at(path).at(operation).at("responses");
    const auto status = std::to_string(heard.status);
    if (!responses.contains(status)) return "the status " + status + " is not described";
    const auto& response = resolved(responses.at(status));
    if (!response.contains("content")) return heard.text.empty() ? "" : "there is a body";
    return mismatch(response["content"]["application/json"]["schema"], heard.body(), "body");
  }

 private:
  const Json& resolved(const Json& schema) const {
    if (!schema.contains("$ref")) return schema;
    return json_.at(Json::json_pointer(schema["$ref"].get<std::string>().substr(1)));
  }

  std::string mismatch(const Json& unresolved, const Json& value, const std::string& place) const {
    const auto& schema = resolved(unresolved);
    if (value.is_null()) return schema.value("nullable", false) ? "" : place + " is null";
    const auto type = schema.at("type").get<std::string>();
    const bool fits =
        (type == "object" && value.is_object()) || (type == "array" && value.is_array()) ||
        (type == "string" && value.is_string()) || (type == "integer" && value.is_number_integer());
    if (!fits) return place + " is no " + type;
    for (const auto& name : schema.value("required", Json::array())) {
      if (!value.contains(name)) return place + " has no " + name.get<std::string>();
    }
    for (const auto& [name, member] : value.items()) {
      if (type == "array") {
        if (auto wrong = mismatch(schema.at("items"), member, place); !wrong.empty()) return wrong;
      }
      if (type != "object") continue;
      if (!schema.contains("properties") || !schema["properties"].contains(name)) {
        return std::string(place).append(" has a member ").append(name);
      }
      if (auto wrong = mismatch(schema["properties"][name], member,
                                std::string(place).append(".").append(name));
          !wrong.empty()) {
        return wrong;
      }
    }
    return "";
  }

  const Json json_;
};

struct Row {
  std::string path;
  std::string operation;
  std::string request;
  std::string body;
  int status;
};

class OpenAPI : public ServicesTest {
 protected:
  void check(const std::string& url, const std::vector<Row>& rows) {
    const Document document(ask(url, "GET /openapi.json").body());
    for (const auto& row : rows) {
      const auto heard = ask(url, row.request, row.body, "X-API-Key: key\r\n");
      EXPECT_EQ(heard.status, row.status) << row.request;
      EXPECT_EQ(document.wrongWith(row.path, row.operation, heard), "") << row.request;
    }
  }
};

TEST_F(OpenAPI, EveryAnswerOfBothServicesIsDescribed) {
  serveAndConnect();
  add("visa");
  const auto token = guest->paylevenToken().value();
  const auto ID = sandbox->backendCards()[0].halvoID;
  const auto identifier = *sandbox->providerInstruments()[0].identifier;
  const std::string guestTemplate = "/v1/guests/{email}";
  const auto cards = guestPath() + "/cards";
  const Json newCard = {{"credit_card",
                         {{"last_four_digits", "1111"},
                          {"brand", "visa"},
                          {"use_case", "default"},
                          {"external_identifier", "ins_x"},
                          {"card_holder", "Erika"},
                          {"expiry_month", "12"},
                          {"expiry_year", "2035"}}},
                        {"provider", 0}};
  check(services->backendURL(),
        {{guestTemplate, "put", "PUT " + guestPath(), "", 200},
         {guestTemplate, "get", "GET " + guestPath(), "", 200},
         {guestTemplate, "get", "GET /v1/guests/other", "", 403},
         {guestTemplate, "patch", "PATCH " + guestPath(), "{\"payment_token\": \"t\"}", 200},
         {guestTemplate, "patch", "PATCH " + guestPath(), "{}", 400},
         {guestTemplate + "/cards", "get", "GET " + cards, "", 200},
         {guestTemplate + "/cards", "post", "POST " + cards, newCard.dump(), 201},
         {guestTemplate + "/cards", "post", "POST " + cards, "{", 400},
         {guestTemplate + "/cards/{id}", "patch", "PATCH " + cards + "/" + ID, "{\"zip\": \"1\"}",
          200},
         {guestTemplate + "/cards/{id}", "delete", "DELETE " + cards + "/" + ID, "", 200},
         {guestTemplate + "/cards/{id}", "delete", "DELETE " + cards + "/" + ID, "", 404}});
  const std::string card =
      R"("credit_card": {"number": "378282246310005", "expiry_month": "12", "expiry_year": "2035",
         "security_code": "1234", "card_holder": "A Guest"}})";
  const auto list = "/v1/users/" + token + "/instruments";
  const std::string listTemplate = "/v1/users/{token}/instruments";
  const std::string useCase = "?use_case=default";
  check(services->providerURL(),
        {{"/v1/users", "post", "POST /v1/users",
          R"({"email": "a@b", "use_case": "default", )" + card, 201},
         {"/v1/users", "post", "POST /v1/users", "{}", 422},
         {listTemplate, "get", "GET " + list + useCase, "", 200},
         {listTemplate, "get", "GET " + list, "", 422},
         {listTemplate, "post", "POST " + list + useCase, "{" + card, 201},
         {listTemplate, "delete", "DELETE " + list + useCase, "", 422},
         {listTemplate, "delete", "DELETE " + list + useCase + "&number=99", "", 404},
         {listTemplate + "/{identifier}", "delete", "DELETE " + list + "/" + identifier + useCase,
          "", 204},
         {listTemplate + "/{identifier}", "delete", "DELETE " + list + "/" + identifier + useCase,
          "", 404}});
  const std::string tester = "/v1/sandbox/";
  check(services->providerURL(),
        {{tester + "instruments", "post", "POST /v1/sandbox/instruments", "{" + card, 201},
         {tester + "instruments", "post", "POST /v1/sandbox/instruments", "{}", 422},
         {tester + "scenes", "post", "POST /v1/sandbox/scenes", R"({"name": "lost-token"})", 200},
         {tester + "scenes", "post", "POST /v1/sandbox/scenes", R"({"name": "x"})", 422},
         {tester + "sides", "get", "GET /v1/sandbox/sides", "", 200},
         {tester + "faults", "post", "POST /v1/sandbox/faults",
          R"({"operation": "createUserToken", "kind": "never", "times": null})", 200},
         {tester + "faults", "post", "POST /v1/sandbox/faults", R"({"kind": "never"})", 422},
         {tester + "faults", "get", "GET /v1/sandbox/faults", "", 200},
         {tester + "faults", "delete", "DELETE /v1/sandbox/faults", "", 200},
         {tester + "firings", "get", "GET /v1/sandbox/firings", "", 200}});
}

}  // namespace
}  // namespace hlv::services
