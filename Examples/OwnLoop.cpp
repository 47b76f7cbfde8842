// An app that owns its loop: the kit's posts wake a poll(2) through an eventfd, and the loop runs
// what is pending.
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>

#include "Sandbox/Cards/TestCards.h"
#include "SandboxApp.h"

int main(int argc, char** argv) {
  const auto sandbox = startApp(argc, argv);
  if (!sandbox) return 2;

  const int wakeUp = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
  const auto platform = hlv::DefaultPlatform::shared();
  platform->setPostHook([wakeUp] {
    const std::uint64_t one = 1;
    // A full counter means that a wake-up is waiting already.
    [[maybe_unused]] const auto written = write(wakeUp, &one, sizeof one);
  });

  bool answered = false;
  bool succeeded = false;
  hlv::HLVSDKPaymentManager::make()->addPaymentInstrument(
      hlv::sandbox::EnteredCard::make(hlv::sandbox::findTestCard("mastercard")->fields), nullptr,
      hlv::HLVSDKGuest::currentGuest(), [&](const auto&, const auto& added, const auto& error) {
        answered = true;
        succeeded = added && !error;
      });

  int wakeUps = 0;
  while (!answered) {
    pollfd loop{wakeUp, POLLIN, 0};
    poll(&loop, 1, -1);
    std::uint64_t count = 0;
    [[maybe_unused]] const auto drained = read(wakeUp, &count, sizeof count);
    ++wakeUps;
    platform->runPending();
  }
  platform->setPostHook(nullptr);
  close(wakeUp);
  std::printf("%s after %d wake-ups\n", succeeded ? "added" : "failed", wakeUps);
  return succeeded ? 0 : 1;
}
