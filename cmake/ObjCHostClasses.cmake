# The host SDK's and the provider's classes for Objective-C, over any host of the core: the sandbox,
# and the scripted host of the tests. Objects, since the kit asks for classes by name: all of them are
# linked, whether or not anybody names them.
add_library(HLVHostClassesObjC OBJECT
  ObjC/HostClasses/AddCardRequest.mm
  ObjC/HostClasses/Clients.mm
  ObjC/HostClasses/Configuration.mm
  ObjC/HostClasses/Constants.mm
  ObjC/HostClasses/PlayedHost.mm
  ObjC/HostClasses/Records.mm
  ObjC/HostClasses/Services.mm)
target_link_libraries(HLVHostClassesObjC PUBLIC HLVSDKPaylevenKitObjC PRIVATE hlv_shipped_flags)
