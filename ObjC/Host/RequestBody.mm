#include "ObjC/Host/RequestBody.h"

#include "ObjC/Binding/Errors.h"
#include "ObjC/Binding/Values.h"

namespace hlv::objc {

RequestBody::RequestBody(::HLVSDKAddPaylevenCreditCardRequestInfo* request, Keeps keeps)
    : request_(request), keeps_(keeps) {
  if (keeps_ == Keeps::request) [request_ retain];
}

RequestBody::~RequestBody() {
  if (keeps_ == Keeps::request) [request_ release];
}

void RequestBody::setProvider(std::int64_t provider) {
  [request_ setProvider:static_cast<NSInteger>(provider)];
}

Dictionary RequestBody::JSONRepresentation() const {
  return fromNSDictionary([request_ hostJSONRepresentation]);
}

bool RequestBody::isValid(ErrorPtr* error) const {
  NSError* reason = nil;
  const bool valid = [request_ isHostHalfValid:error ? &reason : nullptr];
  if (error && reason) *error = fromNSError(reason);
  return valid;
}

::HLVSDKAddPaylevenCreditCardRequestInfo* RequestBody::letGoOfRequest() {
  if (keeps_ == Keeps::request) {
    keeps_ = Keeps::nothing;
    return [request_ autorelease];
  }
  return [[request_ retain] autorelease];
}

::HLVSDKAddCreditCardRequestInfo* handOut(
    const std::shared_ptr<HLVSDKAddCreditCardRequestInfo>& request) {
  auto kitRequest = std::dynamic_pointer_cast<HLVSDKAddPaylevenCreditCardRequestInfo>(request);
  if (!kitRequest) return nil;
  auto* body = dynamic_cast<RequestBody*>(kitRequest->body().get());
  if (!body) return nil;
  ::HLVSDKAddPaylevenCreditCardRequestInfo* object = body->letGoOfRequest();
  [object setCoreRequest:std::move(kitRequest)];
  return object;
}

}  // namespace hlv::objc
