// What the kit uses of the host's authentication, for when the framework's own headers are not
// there.
//
// Threading: any.
#if __has_include(<Halvo_Authentication/Halvo_Authentication.h>)
#import <Halvo_Authentication/Halvo_Authentication.h>
#else

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

/// The guest's session with the host.
@interface HLVSession : NSObject
/// Nil when there is none, which counts as not authorised.
+ (nullable HLVSession*)activeSession;
- (BOOL)isAuthorized;
@end

NS_ASSUME_NONNULL_END

#endif
