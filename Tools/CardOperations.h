// The kit's card operations and the synchronisation, each returned as a report.
//
// Threading: the main thread.
#pragma once

#include <memory>
#include <string>

#include "Host/HLVSDKCoreKit/HLVSDKPaymentBillingAddress.h"
#include "Host/HLVSDKCoreKit/HLVSDKPaymentInstrument.h"
#include "Tools/Output/Report.h"
#include "Tools/Session.h"

namespace hlv::sandbox::tool {

// Every argument may be null: what the kit makes of that is what a tester wants to see.

Report addCard(Session& session, const std::shared_ptr<HLVSDKPaymentInstrument>& card,
               const std::shared_ptr<HLVSDKPaymentBillingAddress>& address,
               const std::shared_ptr<HLVSDKGuest>& guest);
Report updateCard(Session& session, const NullableString& ID,
                  const std::shared_ptr<HLVSDKPaymentBillingAddress>& address,
                  const std::shared_ptr<HLVSDKGuest>& guest);
Report removeCard(Session& session, const NullableString& ID, const NullableString& useCase,
                  const std::shared_ptr<HLVSDKGuest>& guest);

/// Does what makes an app synchronise: "foreground", "authorization" or "reachability".
Report synchronize(Session& session, const std::string& by);

}  // namespace hlv::sandbox::tool
