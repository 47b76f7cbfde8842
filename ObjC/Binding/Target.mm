#import "ObjC/Binding/Target.h"

#include <utility>

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
  [self retain];
  (*_function)(argument);
  [self release];
}

@end
