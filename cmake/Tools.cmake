# The paylevenkit command.
find_package(CLI11 REQUIRED)
find_package(nlohmann_json REQUIRED)

add_library(hlv_tool_output STATIC
  Tools/Output/Report.cpp
  Tools/Output/SideBySide.cpp
  Tools/Output/Table.cpp
  Tools/Output/Terminal.cpp
  Tools/Output/Timeline.cpp)
target_link_libraries(hlv_tool_output PUBLIC hlv_records PRIVATE hlv_shipped_flags Boost::headers)
hlv_precompile(hlv_tool_output <nlohmann/json.hpp>)

add_executable(paylevenkit
  Tools/CardCommands.cpp
  Tools/CardOperations.cpp
  Tools/CardSource.cpp
  Tools/CommandLine.cpp
  Tools/Demo.cpp
  Tools/Documents.cpp
  Tools/GuestCommands.cpp
  Tools/Prompt.cpp
  Tools/SandboxCommands.cpp
  Tools/Session.cpp
  Tools/ServeCommand.cpp
  Tools/StoreFiles.cpp
  Tools/TesterCommands.cpp
  Tools/main.cpp)
target_link_libraries(paylevenkit PRIVATE
  hlv_shipped_flags hlv_tool_output HLVSDKPaylevenServer HLVSDKPaylevenClient
  hlv_beast CLI11::CLI11 nlohmann_json::nlohmann_json)
target_compile_definitions(paylevenkit PRIVATE PAYLEVENKIT_VERSION="${PROJECT_VERSION}")
hlv_precompile(paylevenkit <CLI/CLI.hpp> <nlohmann/json.hpp>)

# The manual page and the completion come from the options themselves.
if(HLVSDKPAYLEVENKIT_INSTALL AND NOT CMAKE_CROSSCOMPILING)
  add_custom_command(
    OUTPUT paylevenkit.1 paylevenkit.bash
    COMMAND paylevenkit manual > paylevenkit.1
    COMMAND paylevenkit completion > paylevenkit.bash
    DEPENDS paylevenkit VERBATIM)
  add_custom_target(CommandDocuments ALL DEPENDS paylevenkit.1 paylevenkit.bash)
endif()
