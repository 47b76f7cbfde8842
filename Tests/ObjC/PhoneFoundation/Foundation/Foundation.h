// As much of Foundation as the public headers use, for a compiler that has a phone as its target
// and no phone's headers.
typedef signed char BOOL;
typedef long NSInteger;
typedef unsigned long NSUInteger;
#define FOUNDATION_EXPORT extern
#define NS_ASSUME_NONNULL_BEGIN _Pragma("clang assume_nonnull begin")
#define NS_ASSUME_NONNULL_END _Pragma("clang assume_nonnull end")
#define NS_DESIGNATED_INITIALIZER __attribute__((objc_designated_initializer))
#define API_AVAILABLE(...) __attribute__((availability(ios, introduced = 13.0)))

@class NSString;
typedef struct _NSZone NSZone;

@protocol NSObject
@end
@protocol NSCopying
- (id)copyWithZone:(NSZone*)zone;
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject>
- (instancetype)init;
@end
@interface NSString : NSObject
@end
@interface NSError : NSObject
@end
@interface NSNotification : NSObject
@end
@interface NSArray<Element> : NSObject
@end
@interface NSDictionary<Key, Element> : NSObject
@end
