# An Objective-C app whose host is the sandbox.
enable_language(OBJC)

add_library(HLVSandboxObjC STATIC
  ObjC/Sandbox/Failure.cpp
  ObjC/Sandbox/HLVSandbox.mm)
target_link_libraries(HLVSandboxObjC
  PUBLIC HLVSDKPaylevenKitObjC HLVSDKPaylevenSandbox
  PRIVATE HLVHostClassesObjC hlv_shipped_flags)

# The classes are those of frameworks: the kit asks for them by name, so all of them are linked,
# whether or not the app names them.
add_executable(paylevenkit-objc-example Examples/ObjCApp/main.m)
target_link_libraries(paylevenkit-objc-example PRIVATE
  hlv_flags $<LINK_LIBRARY:WHOLE_ARCHIVE,HLVSandboxObjC>)
set_target_properties(paylevenkit-objc-example PROPERTIES LINKER_LANGUAGE OBJCXX)

if(HLVSDKPAYLEVENKIT_BENCHMARKS)
  add_executable(ObjCBenchmark Benchmarks/ObjCBenchmark.mm)
  target_link_libraries(ObjCBenchmark PRIVATE
    hlv_flags benchmark::benchmark $<LINK_LIBRARY:WHOLE_ARCHIVE,HLVSandboxObjC>)
endif()
