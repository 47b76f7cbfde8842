// As much of dispatch as the binding uses, so that what only a phone has is compiled here too.
#pragma once

#import <Foundation/Foundation.h>

@protocol OS_dispatch_queue <NSObject>
@end

typedef NSObject<OS_dispatch_queue>* dispatch_queue_t;

FOUNDATION_EXPORT dispatch_queue_t dispatch_get_main_queue(void);
FOUNDATION_EXPORT dispatch_queue_t dispatch_queue_create(const char* label, id attributes);
FOUNDATION_EXPORT const char* dispatch_queue_get_label(dispatch_queue_t queue);
FOUNDATION_EXPORT void dispatch_async(dispatch_queue_t queue, void (^block)(void));
FOUNDATION_EXPORT void dispatch_release(dispatch_queue_t queue);
