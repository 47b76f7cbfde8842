// Messages to the host whose types are the host's own business. Private to the binding.
//
// Threading: as the receivers.
#pragma once

#import <Foundation/Foundation.h>

/// Hosts declare these with enumerations and with classes of their own. Sent through this protocol
/// they compile against every one of them; whole numbers arrive all the same.
@protocol HLVHostMessages
- (Class)kit;
- (id)configuration;
- (void)setProvider:(NSInteger)provider;
- (NSError*)errorWithCode:(NSInteger)code domain:(NSString*)domain message:(NSString*)message;
- (void)logWithLevel:(NSInteger)level
                path:(const char*)path
                line:(NSInteger)line
            function:(const char*)function
              format:(NSString*)format, ...;
@end

namespace hlv::objc {

inline id<HLVHostMessages> toHost(id object) { return static_cast<id<HLVHostMessages>>(object); }

}  // namespace hlv::objc
