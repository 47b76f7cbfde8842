# The tests of the paylevenkit command: the built program from outside, and its tables from inside.
hlv_add_tests(ToolTests
  SOURCES
    Tests/Secrecy/CardDataSearch.cpp
    Tests/Tools/BadInputTests.cpp
    Tests/Tools/Command.cpp
    Tests/Tools/FailureRowTests.cpp
    Tests/Tools/InterruptionTests.cpp
    Tests/Tools/SandboxesTests.cpp
    Tests/Tools/SecrecyTests.cpp
    Tests/Tools/SidesTests.cpp
    Tests/Tools/TimelineTests.cpp
    Tools/Characters.cpp
    Tools/SideBySide.cpp
    Tools/Table.cpp
    Tools/Terminal.cpp
    Tools/Timeline.cpp
  LIBRARIES HLVSDKPaylevenSandbox nlohmann_json::nlohmann_json)
hlv_precompile(ToolTests <nlohmann/json.hpp>)
target_compile_definitions(ToolTests PRIVATE PAYLEVENKIT="$<TARGET_FILE:paylevenkit>")
add_dependencies(ToolTests paylevenkit)
