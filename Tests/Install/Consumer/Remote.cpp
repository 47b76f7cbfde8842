// Makes a sandbox on a server and signs a guest in there.
// Usage: Remote PROVIDER_URL
#include <cstdio>

#include "Client/Sandboxes.h"

int main(int, char** argv) {
  const auto sandbox = hlv::client::TestSandbox::create(argv[1]);
  sandbox.signIn("guest@example.com");
  const auto guests =
      hlv::client::SandboxClient(sandbox.providerURL()).describe(sandbox.description().id).guests;
  std::printf("%s has %ld guest\n", sandbox.providerURL().c_str(), static_cast<long>(guests));
  return guests == 1 ? 0 : 1;
}
