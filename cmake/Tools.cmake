# The paylevenkit command.
find_package(CLI11 REQUIRED)
find_package(nlohmann_json REQUIRED)

add_executable(paylevenkit
  Tools/CardCommands.cpp
  Tools/CardNumberSearch.cpp
  Tools/CardOperations.cpp
  Tools/CardSource.cpp
  Tools/Output/Characters.cpp
  Tools/CommandLine.cpp
  Tools/Demo.cpp
  Tools/Documents.cpp
  Tools/GuestCommands.cpp
  Tools/Output/Printer.cpp
  Tools/Prompt.cpp
  Tools/SandboxCommands.cpp
  Tools/Session.cpp
  Tools/ServeCommand.cpp
  Tools/Output/SideBySide.cpp
  Tools/StoreFiles.cpp
  Tools/Output/Table.cpp
  Tools/Output/Terminal.cpp
  Tools/TesterCommands.cpp
  Tools/Output/Timeline.cpp
  Tools/main.cpp)
target_link_libraries(paylevenkit PRIVATE
  hlv_shipped_flags HLVSDKPaylevenServer HLVSDKPaylevenClient
  Boost::headers CLI11::CLI11 nlohmann_json::nlohmann_json)
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

# Plays many clients of a server for scripts/load; built only when that asks for it.
add_executable(paylevenkit-load-clients EXCLUDE_FROM_ALL Benchmarks/Load/LoadClients.cpp)
target_link_libraries(paylevenkit-load-clients PRIVATE
  hlv_shipped_flags HLVSDKPaylevenKit HLVSDKPaylevenClient)
