#include <utility>

#include "Client/Sandboxes.h"
#include "Values/Error.h"

namespace hlv::client {

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
