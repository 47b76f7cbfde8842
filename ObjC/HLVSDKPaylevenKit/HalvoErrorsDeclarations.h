// What the kit uses of the host's errors, for when the framework's own headers are not there.
//
// Threading: any.
#if __has_include(<Halvo_Errors/Halvo_Errors.h>)
#import <Halvo_Errors/Halvo_Errors.h>
#else

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

/// The one maker of the host's errors; made with `new` for each.
@interface HLVErrorFacade : NSObject
- (nullable NSError*)errorWithCode:(NSInteger)code
                            domain:(nullable NSString*)domain
                           message:(nullable NSString*)message;
- (nullable NSError*)invalidArgumentErrorWithName:(nullable NSString*)name
                                            value:(nullable id)value
                                          message:(nullable NSString*)message;
- (nullable NSError*)requiredArgumentErrorWithName:(nullable NSString*)name
                                           message:(nullable NSString*)message
                                      functionName:(const char*)functionName
                                          fileName:(const char*)fileName;
/// Wraps an error of the payment provider.
- (nullable NSError*)paymentProviderErrorWithError:(nullable NSError*)error;
@end

/// On errors that the host made.
@interface NSError (HLVDeveloperMessage)
- (nullable NSString*)developerMessage;
@end

/// Code 1 in it: no connection is available.
FOUNDATION_EXPORT NSString* const HLVURLErrorDomain;
/// Code 5 in it: the payment instrument information is invalid.
FOUNDATION_EXPORT NSString* const HLVPaymentErrorDomain;

NS_ASSUME_NONNULL_END

#endif
