// The one name of dispatch that the public headers use.
#import <Foundation/Foundation.h>
typedef NSObject* dispatch_queue_t;
