// A function of C++ as an object that Foundation sends a message to.
//
// Threading: as the function.
#pragma once

#import <Foundation/Foundation.h>

#include <functional>

@interface HLVTarget : NSObject {
 @private
  std::function<void(id)>* _function;
}
- (instancetype)initWithFunction:(std::function<void(id)>)function;
/// Keeps itself until the function returns, which may release it.
- (void)call:(id)argument;
@end
