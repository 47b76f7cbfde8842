# find_package(HLVSDKPaylevenKit [OPTIONAL_COMPONENTS Sandbox Client]) and pkg-config, static or shared
# as BUILD_SHARED_LIBS says. One install holds one kind: two copies of the kit in one process would
# each have a host of their own.
include(CMakePackageConfigHelpers)
include(cmake/PublicHeaders.cmake)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/HLVSDKPaylevenKit)
set(header_dir ${CMAKE_INSTALL_INCLUDEDIR}/HLVSDKPaylevenKit)
# Relative, so that an install can be moved.
file(RELATIVE_PATH pc_prefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})

function(hlv_install export pc description requires libraries)
  install(TARGETS ${ARGN} EXPORT ${export}
          FILE_SET HEADERS DESTINATION ${header_dir} COMPONENT Headers)
  install(EXPORT ${export} NAMESPACE HLVSDKPaylevenKit:: FILE ${export}Targets.cmake
          DESTINATION ${package_dir})
  configure_file(cmake/HLVSDKPaylevenKit.pc.in ${pc}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${pc}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endfunction()

hlv_install(Kit HLVSDKPaylevenKit
  "Keeps a guest's payment cards with the Payleven in-app payment service"
  "" "-lHLVSDKPaylevenKit -pthread" HLVSDKPaylevenKit)
if(HLVSDKPAYLEVENKIT_SANDBOX)
  hlv_install(Sandbox HLVSDKPaylevenKitSandbox
    "A host SDK and a payment provider, embedded, for tests of HLVSDKPaylevenKit"
    "HLVSDKPaylevenKit = ${PROJECT_VERSION}, icu-uc, sqlite3, spdlog"
    "-lHLVSDKPaylevenSandbox -lSQLiteCpp" HLVSDKPaylevenSandbox)
  install(FILES NOTICE DESTINATION ${CMAKE_INSTALL_DOCDIR})
endif()
if(HLVSDKPAYLEVENKIT_CLIENT)
  hlv_install(Client HLVSDKPaylevenKitClient
    "A host SDK and a payment provider on a server elsewhere, for tests of HLVSDKPaylevenKit"
    "HLVSDKPaylevenKitSandbox = ${PROJECT_VERSION}"
    "-lHLVSDKPaylevenClient -lHLVSDKPaylevenRecords -lHLVSDKPaylevenBeast"
    HLVSDKPaylevenClient hlv_records hlv_beast)
endif()
if(HLVSDKPAYLEVENKIT_SERVER)
  install(TARGETS paylevenkit)
  if(TARGET CommandDocuments)
    install(FILES ${PROJECT_BINARY_DIR}/paylevenkit.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
    install(FILES ${PROJECT_BINARY_DIR}/paylevenkit.bash RENAME paylevenkit
            DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
  endif()
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
