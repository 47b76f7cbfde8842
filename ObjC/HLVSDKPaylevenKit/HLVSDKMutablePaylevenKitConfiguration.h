// What a configuration block fills in.
//
// Threading: belongs to the block, on the thread that builds the configuration.
#import <HLVSDKPaylevenKit/HLVSDKPaylevenKitConfiguration.h>
#import <HLVSDKPaylevenKit/HLVSDKPaylevenKitMarks.h>

NS_ASSUME_NONNULL_BEGIN

@protocol HLVSDKMutablePaylevenKitConfiguration
@property(nonatomic, readwrite, copy, nullable) NSString* paymentKey;
@end

/// Keeps a key of its own; the one of its base stays nil. A copy of it is immutable.
HLV_AVAILABLE HLV_NOT_SENDABLE @interface HLVSDKMutablePaylevenKitConfiguration
    : HLVSDKPaylevenKitConfiguration<HLVSDKMutablePaylevenKitConfiguration> {
 @private
  NSString* paymentKey;
}

@property(nonatomic, readwrite, copy, nullable) NSString* paymentKey;

@end

NS_ASSUME_NONNULL_END
