# The explorer of every order of events, as a program; the fuzz targets drive the same world.
find_package(CLI11 REQUIRED)

add_library(hlv_explorer STATIC
  Tests/Explorer/ReferenceModel.cpp
  Tests/Explorer/Scenario.cpp
  Tests/Explorer/Simulation.cpp)
target_link_libraries(hlv_explorer PUBLIC HLVSDKPaylevenKit PRIVATE hlv_flags)

add_executable(Explorer
  Tests/Explorer/Explorer.cpp)
target_link_libraries(Explorer PRIVATE hlv_flags hlv_explorer CLI11::CLI11)
target_compile_definitions(Explorer PRIVATE
  HLV_HISTORIES_ON_RECORD="${PROJECT_SOURCE_DIR}/Tests/Explorer/histories.txt")
# Memory that a history leaves behind is found at the end; under an emulator it cannot be.
if(NOT HLVSDKPAYLEVENKIT_SANITIZE AND NOT CMAKE_CROSSCOMPILING)
  target_link_options(Explorer PRIVATE -fsanitize=leak)
endif()

# The beginning of each scenario, under whatever sanitizer this build has.
add_test(NAME Explorer.TheFirstHistoriesOfEachScenario COMMAND Explorer --at-most 500)
add_test(NAME Explorer.OneOrderOfIndependentEventsIsEnough
  COMMAND Explorer --compare-orders --at-most 300)
set_tests_properties(
  Explorer.TheFirstHistoriesOfEachScenario Explorer.OneOrderOfIndependentEventsIsEnough PROPERTIES
  TIMEOUT 300 LABELS Explorer)
