// A request to register a card, as it came over HTTP. Private to the services.
#pragma once

#include <memory>
#include <utility>

#include "Host/HLVSDKPaymentKit/HLVSDKAddCreditCardRequestInfo.h"

namespace hlv::services {

/// Was checked, and holds what the sender's own request wrote.
///
/// Threading: immutable; any.
class ReceivedCard final : public HLVSDKAddCreditCardRequestInfo {
 public:
  static std::shared_ptr<ReceivedCard> make(Dictionary body) {
    return std::shared_ptr<ReceivedCard>(
        new ReceivedCard(std::make_shared<Written>(std::move(body))));
  }

 private:
  class Written final : public Body {
   public:
    explicit Written(Dictionary body) : body_(std::move(body)) {}
    void setProvider(std::int64_t) override {}
    Dictionary JSONRepresentation() const override { return body_; }
    bool isValid(ErrorPtr*) const override { return true; }

   private:
    const Dictionary body_;
  };

  explicit ReceivedCard(std::shared_ptr<Body> body)
      : HLVSDKAddCreditCardRequestInfo(std::move(body)) {}
};

}  // namespace hlv::services
