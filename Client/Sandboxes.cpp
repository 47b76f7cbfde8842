#include "Client/Sandboxes.h"

#include <utility>

#include "Client/HttpClient.h"
#include "Sandbox/JSON/SandboxRecords.h"
#include "Values/Error.h"

namespace hlv::client {
namespace {

constexpr std::chrono::seconds timeout{15};
constexpr const char* sandboxes = "/v1/sandboxes";

std::string sandboxPath(const std::string& id) {
  return std::string(sandboxes) + "/" + percentEncoded(id);
}

/// Of test control; `rest` begins with a slash.
std::string controlPath(const std::string& id, const std::string& rest) {
  return "/sandboxes/" + percentEncoded(id) + "/v1/sandbox" + rest;
}

std::string clockIn(const Json& body) { return sandbox::requiredTextIn(body, "now"); }

}  // namespace

SandboxClient::SandboxClient(const std::string& providerURL) {
  auto url = ServiceURL::read(providerURL);
  if (!url) throw ClientError("The provider's URL reads http://HOST:PORT.");
  const auto end = url->path.rfind('/');
  if (end != std::string::npos && url->path.substr(0, end).ends_with("/sandboxes")) {
    id_ = url->path.substr(end + 1);
    url->path.resize(end - std::string("/sandboxes").size());
  }
  control_ = std::make_shared<HttpClient>(std::move(*url), timeout, std::make_shared<HttpLoop>());
}

SandboxDescription SandboxClient::create(const NewSandbox& options) const {
  return control_->ask("POST", sandboxes, sandbox::jsonOf(options), sandbox::sandboxIn);
}

std::vector<SandboxDescription> SandboxClient::list() const {
  std::vector<SandboxDescription> all;
  NullableString next;
  do {
    auto target = std::string(sandboxes).append("?limit=1000");
    if (next) target.append("&after=").append(percentEncoded(*next));
    control_->ask("GET", target, nullptr, [&](const Json& body) {
      for (const auto& item : sandbox::listIn(body, "sandboxes"))
        all.push_back(sandbox::sandboxIn(item));
      next = sandbox::textIn(body, "next");
    });
  } while (next);
  return all;
}

SandboxDescription SandboxClient::describe(const std::string& id) const {
  return control_->ask("GET", sandboxPath(id), nullptr, sandbox::sandboxIn);
}

void SandboxClient::remove(const std::string& id) const {
  control_->ask("DELETE", sandboxPath(id));
}

SandboxDescription SandboxClient::reset(const std::string& id) const {
  return control_->ask("POST", controlPath(id, "/reset"), Json::object(), sandbox::sandboxIn);
}

SnapshotDescription SandboxClient::snapshot(const std::string& id) const {
  return control_->ask("POST", controlPath(id, "/snapshots"), Json::object(), sandbox::snapshotIn);
}

SandboxDescription SandboxClient::restore(const std::string& id,
                                          const std::string& snapshot) const {
  return control_->ask("POST", controlPath(id, "/restore"), {{"snapshot", snapshot}},
                       sandbox::sandboxIn);
}

std::vector<SnapshotDescription> SandboxClient::snapshots() const {
  return control_->ask("GET", "/v1/snapshots", nullptr, [](const Json& body) {
    return sandbox::recordsIn(sandbox::listIn(body, "snapshots"), sandbox::snapshotIn);
  });
}

void SandboxClient::removeSnapshot(const std::string& snapshot) const {
  control_->ask("DELETE", "/v1/snapshots/" + percentEncoded(snapshot));
}

std::string SandboxClient::clock(const std::string& id) const {
  return control_->ask("GET", controlPath(id, "/clock"), nullptr, clockIn);
}

std::string SandboxClient::setClock(const std::string& id, const std::string& time) const {
  return control_->ask("PUT", controlPath(id, "/clock"), {{"now", time}}, clockIn);
}

std::string SandboxClient::advanceClock(const std::string& id, std::int64_t seconds) const {
  return control_->ask("PUT", controlPath(id, "/clock"), {{"advance_seconds", seconds}}, clockIn);
}

// One for a test.

TestSandbox TestSandbox::create(const std::string& providerURL, const NewSandbox& options) {
  return {std::make_shared<SandboxClient>(providerURL), options};
}

TestSandbox::TestSandbox(std::shared_ptr<const SandboxClient> client, const NewSandbox& options)
    : client_(std::move(client)) {
  auto opened = sandbox::Sandbox::openInMemory();
  if (!opened) throw ClientError(opened.problem());
  local_ = std::move(*opened);
  description_ = client_->create(options);
  host_ = RemoteHost::open(local_, {backendURL(), providerURL()});
}

TestSandbox::~TestSandbox() {
  if (!client_) return;  // Moved from.
  host_.reset();
  local_.reset();
  try {
    client_->remove(description_.id);
  } catch (const ClientError&) {
    // The server may be gone, and the sandbox with it; otherwise its time ends.
  }
}

void TestSandbox::signIn(const std::string& email) const {
  if (const auto error = host_->signIn(email)) {
    throw ClientError(error->localizedDescription().value_or("The guest cannot be signed in."));
  }
  const auto signedIn = local_->signIn(email);
  if (!signedIn) throw ClientError(signedIn.problem());
}

}  // namespace hlv::client
