#include "Sandbox/RecordedCall.h"

#include <utility>

#include "Host/HLVSDKCoreKit/HLVSDKCreditCard.h"

namespace hlv::sandbox {
namespace {

std::string described(const std::shared_ptr<HLVSDKGuest>& guest,
                      const std::shared_ptr<HLVSDKCreditCard>& card, const ErrorPtr& error) {
  std::string text;
  const auto add = [&](const std::string& part) { text += (text.empty() ? "" : ", ") + part; };
  if (error) add("error " + error->domain() + " " + std::to_string(error->code()));
  if (guest) add("guest");
  if (card) add("card " + card->halvoID().value_or("without ID"));
  return text.empty() ? "nothing" : text;
}

}  // namespace

HLVSDKGuestCardCompletion recordedCall(const std::shared_ptr<Sandbox>& sandbox,
                                       const std::string& what,
                                       HLVSDKGuestCardCompletion completion) {
  sandbox->journal().record("app", "kit", what);
  return [weakSandbox = std::weak_ptr(sandbox), what, completion = std::move(completion)](
             const std::shared_ptr<HLVSDKGuest>& guest,
             const std::shared_ptr<HLVSDKCreditCard>& card, const ErrorPtr& error) {
    if (const auto open = weakSandbox.lock()) {
      open->journal().record("kit", "app", what, described(guest, card, error));
    }
    completion(guest, card, error);
  };
}

}  // namespace hlv::sandbox
