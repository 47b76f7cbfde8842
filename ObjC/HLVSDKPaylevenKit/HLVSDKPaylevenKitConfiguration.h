// The kit's own configuration: the Payleven payment key.
//
// Threading: a record never changes and may be read from any thread.
#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>
#import <HLVSDKPaylevenKit/HLVSDKPaylevenKitMarks.h>

NS_ASSUME_NONNULL_BEGIN

@class HLVSDKMutablePaylevenKitConfiguration;

/// Goes into the host configuration's list of kits, beside the kit's class.
HLV_AVAILABLE HLV_SENDABLE @interface HLVSDKPaylevenKitConfiguration
    : NSObject<HLVSDKKitConfiguration> {
 @private
  NSString* _paymentKey;
}

/// The API key of the payment provider. It may be nil; enabling the kit refuses that, and accepts
/// an empty one.
@property(nonatomic, readonly, copy, nullable) NSString* paymentKey;

/// Calls the block, which may be nil, once and before it returns, with a fresh mutable record, and
/// returns an immutable copy of what the block made of it.
+ (HLVSDKPaylevenKitConfiguration*)configurationWithBlock:
    (nullable void (^)(HLVSDKMutablePaylevenKitConfiguration* configuration))block
    HLV_SWIFT_NAME(init(block:));

/// An immutable record with the key of any object that has a `paymentKey`. The key is not copied
/// again; nil has none.
- (instancetype)initWithConfiguration:(nullable id)configuration NS_DESIGNATED_INITIALIZER;
- (instancetype)init NS_DESIGNATED_INITIALIZER;

@end

NS_ASSUME_NONNULL_END
