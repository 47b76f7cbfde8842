#include <cstdlib>
#include <system_error>
#include <utility>

#include "Client/Sandboxes.h"
#include "Values/Error.h"

namespace hlv::client {
namespace {

constexpr std::int64_t secondsToLive = 3600;

NewSandbox usualOptions() {
  NewSandbox options;
  options.secondsToLive = secondsToLive;
  options.isInMemory = true;
  return options;
}

}  // namespace

struct TestSandbox::Folder {
  Folder() {
    auto name = (std::filesystem::temp_directory_path() / "paylevenkit-XXXXXX").string();
    if (!::mkdtemp(name.data())) throw ClientError("No folder for temporary files can be made.");
    path = name;
  }
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  std::filesystem::path path;
};

TestSandbox TestSandbox::create(const std::string& providerURL) {
  return create(providerURL, usualOptions());
}

TestSandbox TestSandbox::create(const std::string& providerURL, const NewSandbox& options) {
  return {std::make_shared<SandboxClient>(providerURL), options};
}

TestSandbox::TestSandbox(std::shared_ptr<const SandboxClient> client, const NewSandbox& options)
    : client_(std::move(client)), folder_(std::make_shared<Folder>()) {
  sandbox::SandboxOptions localOptions;
  localOptions.storePath = folder_->path / "local.sqlite";
  auto opened = sandbox::Sandbox::open(localOptions);
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
