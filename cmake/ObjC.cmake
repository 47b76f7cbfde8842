# The same kit for Objective-C apps. On a phone it is built with Apple's compiler and frameworks;
# here with clang, the GCC runtime and GNUstep's Foundation.
enable_language(OBJCXX)
set(CMAKE_OBJCXX_STANDARD 20)
set(CMAKE_OBJCXX_EXTENSIONS OFF)
set(CMAKE_OBJCXX_VISIBILITY_PRESET hidden)

add_library(hlv_objc_flags INTERFACE)
target_include_directories(hlv_objc_flags INTERFACE ${PROJECT_SOURCE_DIR}/ObjC)
# Reference counts are kept by hand: that runtime has no automatic counting.
target_compile_options(hlv_objc_flags INTERFACE -fblocks -fexceptions)
if(APPLE)
  target_compile_options(hlv_objc_flags INTERFACE -fno-objc-arc)
  target_link_libraries(hlv_objc_flags INTERFACE "-framework Foundation")
else()
  find_program(GNUSTEP_CONFIG gnustep-config REQUIRED)
  execute_process(COMMAND ${GNUSTEP_CONFIG} --objc-flags OUTPUT_VARIABLE gnustep_flags
    OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  execute_process(COMMAND ${GNUSTEP_CONFIG} --base-libs OUTPUT_VARIABLE gnustep_libraries
    OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  separate_arguments(gnustep_flags UNIX_COMMAND "${gnustep_flags}")
  separate_arguments(gnustep_libraries UNIX_COMMAND "${gnustep_libraries}")
  # Only what says where things are and how classes are laid out; the rest is this project's choice.
  list(FILTER gnustep_flags INCLUDE REGEX "^-(D|I/|fconstant-string-class)")
  list(TRANSFORM gnustep_flags REPLACE "^-I" "-isystem")
  # The runtime's headers lie in GCC's own folder.
  execute_process(COMMAND gcc -print-file-name=include OUTPUT_VARIABLE runtime_headers
    OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  target_compile_options(hlv_objc_flags INTERFACE ${gnustep_flags}
    -idirafter ${runtime_headers})
  target_include_directories(hlv_objc_flags SYSTEM INTERFACE
    ${PROJECT_SOURCE_DIR}/ObjC/Foundation/GNUstep)
  # First: Foundation brings functions of the same names, which do not copy today's blocks.
  target_link_libraries(hlv_objc_flags INTERFACE BlocksRuntime ${gnustep_libraries})
endif()

add_library(HLVSDKPaylevenKitObjC STATIC
  ObjC/Binding/Strings.mm
  ObjC/Binding/Target.mm
  ObjC/Binding/Values.mm
  ObjC/Binding/WeakObject.mm
  ObjC/Classes/HLVSDKAddPaylevenCreditCardRequestInfo.mm
  ObjC/Classes/HLVSDKMutablePaylevenKitConfiguration.mm
  ObjC/Classes/HLVSDKPLVPaymentInstrument.mm
  ObjC/Classes/HLVSDKPayleven.mm
  ObjC/Classes/HLVSDKPaylevenKitConfiguration.mm
  ObjC/Classes/HLVSDKPaylevenPaymentInstrumentFinder.mm
  ObjC/Classes/HLVSDKPaylevenPaymentInstrumentManager.mm
  ObjC/Classes/HLVSDKPaylevenPaymentInstrumentsSynchronizer.mm
  ObjC/Classes/HLVSDKPaymentManager.mm
  ObjC/Foundation/BlocksRuntime.mm
  ObjC/Foundation/FoundationPlatform.mm
  ObjC/Foundation/Queues.mm
  ObjC/Host/Install.mm)
target_link_libraries(HLVSDKPaylevenKitObjC
  PUBLIC HLVSDKPaylevenKit hlv_objc_flags PRIVATE hlv_shipped_flags)
