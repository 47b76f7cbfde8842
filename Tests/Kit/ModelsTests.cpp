// The request that registers a card.
#include "Models/HLVSDKAddPaylevenCreditCardRequestInfo.h"
#include "Models/HLVSDKPLVPaymentInstrument.h"
#include "Tests/Support/KitTest.h"

namespace hlv::testing {
namespace {

using Request = HLVSDKAddPaylevenCreditCardRequestInfo;

class RequestTest : public KitTest {
 protected:
  std::shared_ptr<Request> make(NullableString token) {
    return Request::initWithPaymentInstrument(card, address, std::move(token));
  }
};

TEST_F(RequestTest, TheTokenGoesInsideTheCardObject) {
  const auto request = make("abc");
  EXPECT_EQ(host->requestProvider, 0);
  const Dictionary body = request->JSONRepresentation();
  request->setPaylevenToken("later");
  EXPECT_EQ(body,
            (Dictionary{{"credit_card",
                         Dictionary{{"brand", "visa"}, {"last", "1111"}, {"plv_token", "abc"}}},
                        {"provider", 0}}));
}

TEST_F(RequestTest, WithoutATokenOrACardObjectTheHostsBodyStays) {
  EXPECT_EQ(make(std::nullopt)->JSONRepresentation(), *host->requestBody);
  for (const Value& noObject : {Value(), Value("text")}) {
    *host->requestBody = {{"credit_card", noObject}, {"provider", 0}};
    EXPECT_EQ(make("abc")->JSONRepresentation(), *host->requestBody);
  }
}

TEST_F(RequestTest, TheHostsVerdictComesBeforeTheToken) {
  ErrorPtr error;
  EXPECT_TRUE(make("abc")->isValid(&error));
  EXPECT_EQ(error, nullptr);
  EXPECT_FALSE(make("")->isValid(&error));
  EXPECT_EQ(madeAs(error), "invalid 'paylevenToken' value '', message nil");
  EXPECT_FALSE(make(std::nullopt)->isValid(nullptr));
  host->requestError = makeError("host");
  EXPECT_FALSE(make("")->isValid(&error));
  EXPECT_EQ(error, host->requestError);
}

TEST_F(RequestTest, TheHostsOwnRequestIsTheHostsBodyAndVerdict) {
  const auto request = HLVSDKAddCreditCardRequestInfo::initWithPaymentInstrument(card, address);
  EXPECT_EQ(request->JSONRepresentation(), *host->requestBody);
  EXPECT_TRUE(request->isValid(nullptr));
}

TEST_F(RequestTest, AHostThatMakesNoBodyMakesNoRequest) {
  host->requestBody = nullptr;
  EXPECT_EQ(make("abc"), nullptr);
  EXPECT_EQ(HLVSDKAddCreditCardRequestInfo::initWithPaymentInstrument(card, address), nullptr);
}

TEST_F(RequestTest, APairKeepsTheSameInstrument) {
  const auto pair = HLVSDKPLVPaymentInstrument::initWithPaymentInstrument(instrument, "private");
  EXPECT_EQ(pair->paymentInstrument(), instrument);
  EXPECT_EQ(pair->useCase(), "private");
}

}  // namespace
}  // namespace hlv::testing
