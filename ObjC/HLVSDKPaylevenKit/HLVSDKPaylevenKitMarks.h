// What the compiler and Swift must know beside the declarations.
#import <Foundation/Foundation.h>

/// A result that may be nil although the error is nil too; it stays optional in `async` forms.
#if __has_feature(nullability_nullable_result)
#define HLV_NULLABLE_RESULT _Nullable_result
#else
#define HLV_NULLABLE_RESULT _Nullable
#endif

/// No `async` form: the completion may never be called, and a task would wait for it forever.
#if __has_attribute(swift_async)
#define HLV_NO_ASYNC __attribute__((swift_async(none)))
#else
#define HLV_NO_ASYNC
#endif

#define HLV_SWIFT_NAME(name) __attribute__((swift_name(#name)))

#if __has_attribute(swift_attr)
/// May be used from several threads at the same time.
#define HLV_SENDABLE __attribute__((swift_attr("@Sendable")))
#define HLV_NOT_SENDABLE __attribute__((swift_attr("@_nonSendable")))
/// A block that is called on the main thread.
#define HLV_ON_MAIN __attribute__((swift_attr("@UIActor")))
#else
#define HLV_SENDABLE
#define HLV_NOT_SENDABLE
#define HLV_ON_MAIN
#endif

/// The oldest systems that the kit is for.
#ifdef API_AVAILABLE
#define HLV_AVAILABLE API_AVAILABLE(ios(13.0), macos(10.15))
#else
#define HLV_AVAILABLE
#endif
