# find_package(HLVSDKPaylevenKit [OPTIONAL_COMPONENTS Sandbox]) and pkg-config, static or shared as
# BUILD_SHARED_LIBS says. One install holds one kind: two copies of the kit in one process would
# each have a host of their own.
include(CMakePackageConfigHelpers)
include(cmake/PublicHeaders.cmake)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/HLVSDKPaylevenKit)
set(header_dir ${CMAKE_INSTALL_INCLUDEDIR}/HLVSDKPaylevenKit)

install(TARGETS HLVSDKPaylevenKit EXPORT Kit FILE_SET HEADERS DESTINATION ${header_dir})
install(EXPORT Kit NAMESPACE HLVSDKPaylevenKit:: FILE KitTargets.cmake DESTINATION ${package_dir})
if(HLVSDKPAYLEVENKIT_SANDBOX)
  install(TARGETS HLVSDKPaylevenSandbox EXPORT Sandbox FILE_SET HEADERS DESTINATION ${header_dir})
  install(EXPORT Sandbox NAMESPACE HLVSDKPaylevenKit:: FILE SandboxTargets.cmake
          DESTINATION ${package_dir})
endif()
if(HLVSDKPAYLEVENKIT_SERVER)
  install(TARGETS paylevenkit)
endif()

configure_package_config_file(
  cmake/HLVSDKPaylevenKitConfig.cmake.in HLVSDKPaylevenKitConfig.cmake
  INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(
  HLVSDKPaylevenKitConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/HLVSDKPaylevenKitConfig.cmake
  ${PROJECT_BINARY_DIR}/HLVSDKPaylevenKitConfigVersion.cmake
  DESTINATION ${package_dir})

# Relative, so that an install can be moved.
file(RELATIVE_PATH pc_prefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(cmake/HLVSDKPaylevenKit.pc.in HLVSDKPaylevenKit.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/HLVSDKPaylevenKit.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
