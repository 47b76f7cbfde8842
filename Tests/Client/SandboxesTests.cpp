// What a client of sandboxes makes of replies that no server of ours gives.
#include "Client/Sandboxes.h"
#include "Tests/Client/ClientTest.h"

namespace hlv::client {
namespace {

TEST(Sandboxes, AProblemIsOneSentence) {
  const auto sentenceOf = [](const std::string& reply) {
    const CannedServer server({reply, Then::close});
    try {
      (void)SandboxClient(server.url()).describe("a");
      return std::string();
    } catch (const ClientError& error) {
      return std::string(error.what());
    }
  };
  EXPECT_EQ(sentenceOf(CannedServer::http(
                R"({"error":{"code":"no-such-sandbox","domain":"D","number":404,)"
                R"("message":"There is no sandbox of this name."}})",
                "404 Not Found")),
            "There is no sandbox of this name.");
  EXPECT_EQ(sentenceOf(CannedServer::http("{}")), "The service's reply cannot be read.");
  EXPECT_EQ(sentenceOf(""), "The connection ended before the service had answered.");
  EXPECT_THROW(SandboxClient("https://127.0.0.1"), ClientError);
  EXPECT_EQ(SandboxClient("http://127.0.0.1/proxy/sandboxes/own").id(), "own");
}

}  // namespace
}  // namespace hlv::client
