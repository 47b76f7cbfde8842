#import "ObjC/Binding/Target.h"

#include <utility>

#include "ObjC/Binding/WeakObject.h"

@implementation HLVTarget

- (instancetype)initWithFunction:(std::function<void(id)>)function {
  if ((self = [super init])) _function = new std::function<void(id)>(std::move(function));
  return self;
}

- (void)dealloc {
  delete _function;
  [super dealloc];
}

- (void)call:(id)argument {
  const hlv::objc::Kept<HLVTarget> kept([self retain]);
  (*_function)(argument);
}

@end
