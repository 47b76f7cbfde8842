// The host's and the provider's records, each over one of the core's.
//
// The public classes have no place for instance variables. What they hand out are objects of
// private subclasses, one a class, which keep a record of the core.
//
// Threading: as the record.
#pragma once

#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>
#import <HLVSDKPaylevenKit/HLVSDKPaymentKitDeclarations.h>
#import <HLVSDKPaylevenKit/HalvoAuthenticationDeclarations.h>
#import <HLVSDKPaylevenKit/PaylevenFrameworkDeclarations.h>

#include <memory>
#include <type_traits>

#include "Host/HLVSDKCoreKit/HLVSDKCreditCard.h"
#include "Host/HLVSDKCoreKit/HLVSDKGuest.h"
#include "Host/HLVSDKCoreKit/HLVSDKPaymentBillingAddress.h"
#include "Host/HLVSDKCoreKit/HLVSDKPaymentInstrument.h"
#include "Host/HLVSDKCoreKit/HLVSDKUpdateGuestRequestInfo.h"
#include "Host/HLVSDKPaymentKit/HLVSDKAddCreditCardRequestInfo.h"
#include "Host/Halvo_Authentication/HLVSession.h"
#include "Host/PaylevenFramework/PLVPaymentInstrument.h"
#include "ObjC/Binding/Blocks.h"
#include "ObjC/HostClasses/PlayedHost.h"
#include "Values/List.h"

/// What the private subclasses have in common.
@protocol HLVCoreObject
- (std::shared_ptr<hlv::Object>)coreObject;
@end

namespace hlv::host_classes {

/// The core's record behind `object`; null for nil and for objects of other makers.
template <class T>
std::shared_ptr<T> behind(id object) {
  if (![object respondsToSelector:@selector(coreObject)]) return nullptr;
  return std::dynamic_pointer_cast<T>([object coreObject]);
}

/// A new object over a record, to be released by the caller; nil for null.
::HLVSDKGuest* newObject(const std::shared_ptr<HLVSDKGuest>& record);
::HLVSDKPaymentInstrument* newObject(const std::shared_ptr<HLVSDKPaymentInstrument>& record);
::HLVSDKCreditCard* newObject(const std::shared_ptr<HLVSDKCreditCard>& record);
::HLVSDKPaymentBillingAddress* newObject(
    const std::shared_ptr<HLVSDKPaymentBillingAddress>& record);
::HLVSDKUpdateGuestRequestInfo* newObject(
    const std::shared_ptr<HLVSDKUpdateGuestRequestInfo>& record);
::HLVSession* newObject(const std::shared_ptr<HLVSession>& record);
::PLVCreditCardPaymentInstrument* newObject(
    const std::shared_ptr<PLVCreditCardPaymentInstrument>& record);

/// The same, for as long as its pool. While its host plays, a guest is always the same object.
template <class Record>
auto asObject(const std::shared_ptr<Record>& record) {
  if constexpr (std::is_base_of_v<HLVSDKGuest, Record>) {
    const auto host = PlayedHost::current();
    if (host && record) return host->objectOf(record);
  }
  return [newObject(record) autorelease];
}

// What the core's host replies, on its way to an Objective-C app.

inline NSString* asObject(const NullableString& string) { return hlv::objc::toNSString(string); }
inline NSError* asObject(const ErrorPtr& error) { return hlv::objc::toNSError(error); }

/// A missing list is nil.
template <class T>
NSArray* asObject(const NullableList<T>& list) {
  if (!list) return nil;
  NSMutableArray* objects = [NSMutableArray arrayWithCapacity:list->size()];
  for (const auto& element : *list) [objects addObject:asObject(element)];
  return objects;
}

/// A completion that hands each result to `block`, in a pool of its own: the host's threads may
/// have none. Nil does nothing.
template <class Block>
auto replyTo(Block block) {
  return [copied = hlv::objc::CopiedBlock<Block>(block)](const auto&... results) {
    if (!copied.block()) return;
    @autoreleasepool {
      copied.block()(asObject(results)...);
    }
  };
}

/// A request to register a card, on its way to the core's backend: asks `request` for its body, and
/// whether it is valid, so that what a kit's subclass adds gets through. Null for nil.
std::shared_ptr<hlv::HLVSDKAddCreditCardRequestInfo> forwarded(
    ::HLVSDKAddCreditCardRequestInfo* request);

}  // namespace hlv::host_classes
