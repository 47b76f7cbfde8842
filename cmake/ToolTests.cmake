# The tests of the paylevenkit command: the built program from outside, and its tables from inside.
hlv_add_tests(ToolTests
  SOURCES
    Tests/Tools/BadInputTests.cpp
    Tests/Tools/InterruptionTests.cpp
    Tests/Tools/SidesTests.cpp
    Tests/Tools/TimelineTests.cpp
  LIBRARIES hlv_tool_output nlohmann_json::nlohmann_json)
hlv_precompile(ToolTests <nlohmann/json.hpp>)
target_compile_definitions(ToolTests PRIVATE PAYLEVENKIT="$<TARGET_FILE:paylevenkit>")
add_dependencies(ToolTests paylevenkit)

# What the manuals print, and the rows of the table of failures, against real runs.
add_test(NAME Documents.ShowWhatTheCommandPrints
  COMMAND ${HLV_PYTHON} ${PROJECT_SOURCE_DIR}/scripts/documents --command $<TARGET_FILE:paylevenkit>)
set_tests_properties(Documents.ShowWhatTheCommandPrints PROPERTIES TIMEOUT 300 LABELS ToolTests)
