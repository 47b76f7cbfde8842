// A serial queue, as the platform has it.
//
// Threading: any.
#import <Foundation/Foundation.h>

#if __has_include(<dispatch/dispatch.h>)
#import <dispatch/dispatch.h>
typedef dispatch_queue_t HLVSDKQueue;
#else
/// Where the system has no dispatch queues: an operation queue that runs one operation at a time.
typedef NSOperationQueue* HLVSDKQueue;
#endif
