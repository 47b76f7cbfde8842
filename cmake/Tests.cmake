# The tests. Each test program links its part and nothing above it.
if(CMAKE_CROSSCOMPILING)
  # From the sources that its Debian package brings.
  include(FetchContent)
  FetchContent_Declare(GTest SOURCE_DIR /usr/src/googletest OVERRIDE_FIND_PACKAGE)
  set(BUILD_GMOCK OFF)
  set(INSTALL_GTEST OFF)
endif()
find_package(GTest REQUIRED)
include(GoogleTest)

# By patterns, so that no test is left out of a list.
function(hlv_add_tests name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
  file(GLOB sources CONFIGURE_DEPENDS ${arg_SOURCES})
  add_executable(${name} ${sources})
  target_link_libraries(${name} PRIVATE hlv_flags ${arg_LIBRARIES} GTest::gtest_main)
  hlv_precompile(${name} <gtest/gtest.h>)
  # The libraries too are bound before a test that searches memory for what was overwritten.
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60
    PROPERTIES TIMEOUT 120 LABELS ${name} ENVIRONMENT LD_BIND_NOW=1)
endfunction()

hlv_add_tests(PlatformTests SOURCES Tests/Platform/*.cpp LIBRARIES HLVSDKPaylevenKit)
hlv_add_tests(KitTests SOURCES Tests/Kit/*.cpp LIBRARIES HLVSDKPaylevenKit)
hlv_add_tests(SecrecyTests SOURCES Tests/Secrecy/*.cpp LIBRARIES HLVSDKPaylevenKit)
if(HLVSDKPAYLEVENKIT_SANITIZE MATCHES "address")
  target_compile_definitions(SecrecyTests PRIVATE HLV_KEEPS_WHAT_IS_FREED)
endif()
hlv_add_tests(StressTests SOURCES Tests/Stress/*.cpp LIBRARIES HLVSDKPaylevenKit hlv_asio)

find_program(HLV_PYTHON NAMES python3 REQUIRED)
add_test(NAME Layering.IsAsTheTableSays
  COMMAND ${HLV_PYTHON} ${PROJECT_SOURCE_DIR}/Tests/Layering/layering.py)
add_test(NAME Layering.UsesTheFieldsWords
  COMMAND ${PROJECT_SOURCE_DIR}/Tests/Layering/words.sh)

include(cmake/Explorer.cmake)
if(HLVSDKPAYLEVENKIT_SANITIZE MATCHES "fuzzer")
  include(cmake/Fuzz.cmake)
endif()
if(HLVSDKPAYLEVENKIT_SANDBOX)
  include(cmake/SandboxTests.cmake)
endif()
if(HLVSDKPAYLEVENKIT_SERVER)
  include(cmake/ClientTests.cmake)
  include(cmake/ServerTests.cmake)
  include(cmake/OpenAPITests.cmake)
  include(cmake/ConsoleTests.cmake)
  include(cmake/ToolTests.cmake)
endif()

# Builds release libraries of its own, so one of the presets is enough.
if(NOT HLVSDKPAYLEVENKIT_SANITIZE MATCHES "thread" AND NOT CMAKE_CROSSCOMPILING)
  add_test(NAME InstalledPackage.BuildsAndRunsTheExamples
    COMMAND ${PROJECT_SOURCE_DIR}/Tests/Install/installed-package.sh
            ${PROJECT_SOURCE_DIR} ${PROJECT_BINARY_DIR}/installed
            ${CMAKE_CXX_COMPILER} "${HLVSDKPAYLEVENKIT_SANITIZE}")
  set_tests_properties(InstalledPackage.BuildsAndRunsTheExamples PROPERTIES
    TIMEOUT 900 RUN_SERIAL ON)
endif()
