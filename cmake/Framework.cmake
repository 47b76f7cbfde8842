# The kit and its Objective-C classes as a static framework of one platform. Static, since the host's
# and the provider's classes are the app's to link.
file(GLOB framework_headers CONFIGURE_DEPENDS ObjC/HLVSDKPaylevenKit/*.h)
set(framework_files ${PROJECT_SOURCE_DIR}/ObjC/Framework)

add_library(HLVSDKPaylevenKitFramework STATIC
  $<TARGET_OBJECTS:HLVSDKPaylevenKit> $<TARGET_OBJECTS:HLVSDKPaylevenKitObjC> ${framework_headers}
  ${framework_files}/module.modulemap ${framework_files}/PrivacyInfo.xcprivacy)
set_source_files_properties(${framework_files}/module.modulemap PROPERTIES
  MACOSX_PACKAGE_LOCATION Modules)
if(IOS)
  set(HLVSDKPAYLEVENKIT_MINIMUM_KEY MinimumOSVersion)
else()
  set(HLVSDKPAYLEVENKIT_MINIMUM_KEY LSMinimumSystemVersion)
endif()
set_target_properties(HLVSDKPaylevenKitFramework PROPERTIES
  OUTPUT_NAME HLVSDKPaylevenKit FRAMEWORK ON LINKER_LANGUAGE CXX
  PUBLIC_HEADER "${framework_headers}" RESOURCE ${framework_files}/PrivacyInfo.xcprivacy
  MACOSX_FRAMEWORK_INFO_PLIST ${framework_files}/Info.plist.in)
