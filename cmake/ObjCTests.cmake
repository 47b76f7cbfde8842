# The Objective-C classes, tested through their selectors against a host written in Objective-C.
find_package(GTest REQUIRED)
find_package(Python3 REQUIRED COMPONENTS Interpreter)
include(GoogleTest)

add_executable(ObjCTests
  Tests/ObjC/ClassesTests.mm
  Tests/ObjC/MemoryTests.mm
  Tests/ObjC/OperationsTests.mm
  Tests/ObjC/Sanitizers.cpp
  $<TARGET_OBJECTS:HLVHostClassesObjC>)
# Whole: a class that is only looked up by its name must be there too.
target_link_libraries(ObjCTests PRIVATE hlv_shipped_flags GTest::gtest_main
  $<LINK_LIBRARY:WHOLE_ARCHIVE,HLVSDKPaylevenKitObjC>)
gtest_discover_tests(ObjCTests DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 120 LABELS ObjCTests)

if(HLVSDKPAYLEVENKIT_SANDBOX)
  # Foundation keeps some of its objects to the end, which is no leak of the app.
  add_test(NAME ObjC.TheExampleAppEndsWell
    COMMAND sh -c "rm -f example.sqlite*; exec ./paylevenkit-objc-example example.sqlite")
  set_tests_properties(ObjC.TheExampleAppEndsWell PROPERTIES TIMEOUT 120 LABELS ObjCTests
    WORKING_DIRECTORY ${PROJECT_BINARY_DIR} ENVIRONMENT ASAN_OPTIONS=detect_leaks=0)
endif()

# The sources stay acceptable to Apple's compiler, as far as Foundation's headers here let one see.
add_test(NAME ObjC.CompilesForApplesRuntime
  COMMAND Python3::Interpreter ${PROJECT_SOURCE_DIR}/Tests/ObjC/apple_runtime.py
          ${PROJECT_SOURCE_DIR}/Tests/ObjC/runtime-table.txt ${PROJECT_SOURCE_DIR}/ObjC
          ${CMAKE_OBJCXX_COMPILER} -std=c++20
          -I${PROJECT_SOURCE_DIR} -I${PROJECT_SOURCE_DIR}/ObjC
          $<TARGET_PROPERTY:hlv_objc_flags,INTERFACE_COMPILE_OPTIONS>
          -isystem ${PROJECT_SOURCE_DIR}/ObjC/Foundation/GNUstep
          -isystem ${PROJECT_SOURCE_DIR}/Tests/ObjC/PhoneFoundation
  COMMAND_EXPAND_LISTS)
add_test(NAME ObjC.XcodeFilesAreWhole
  COMMAND Python3::Interpreter ${PROJECT_SOURCE_DIR}/Tests/ObjC/xcode_files.py
          ${PROJECT_SOURCE_DIR} ${CMAKE_COMMAND} ${CMAKE_CXX_COMPILER})
set_tests_properties(ObjC.CompilesForApplesRuntime ObjC.XcodeFilesAreWhole PROPERTIES TIMEOUT 300 LABELS ObjCTests
  ENVIRONMENT PYTHONDONTWRITEBYTECODE=1)
