# The tests of the paylevenkit command: its tables from inside, and the built program from outside.
hlv_add_tests(ToolTests
  SOURCES
    Tests/Tools/SidesTests.cpp
  LIBRARIES hlv_tool_output)

add_test(NAME Command.RefusesPrintsAndLeavesWhatItShould
  COMMAND ${HLV_PYTHON} -B ${PROJECT_SOURCE_DIR}/Tests/Tools/command_test.py)
# What the manuals print, and the rows of the table of failures, against real runs.
add_test(NAME Documents.ShowWhatTheCommandPrints
  COMMAND ${HLV_PYTHON} -B ${PROJECT_SOURCE_DIR}/scripts/documents
          --command $<TARGET_FILE:paylevenkit>)
set_tests_properties(
  Command.RefusesPrintsAndLeavesWhatItShould Documents.ShowWhatTheCommandPrints PROPERTIES
  TIMEOUT 300 LABELS ToolTests ENVIRONMENT "PAYLEVENKIT=$<TARGET_FILE:paylevenkit>")
