# The embedded host SDK and payment provider.
find_package(SQLite3 REQUIRED)
find_package(spdlog REQUIRED)

add_library(HLVSDKPaylevenSandbox STATIC)
add_library(HLVSDKPaylevenKit::Sandbox ALIAS HLVSDKPaylevenSandbox)
set_target_properties(HLVSDKPaylevenSandbox PROPERTIES EXPORT_NAME Sandbox)
target_sources(HLVSDKPaylevenSandbox PRIVATE
  Sandbox/AddCardBody.cpp
  Sandbox/Answers.cpp
  Sandbox/Backend.cpp
  Sandbox/BackendClient.cpp
  Sandbox/BackendTables.cpp
  Sandbox/Calendar.cpp
  Sandbox/CardBrands.cpp
  Sandbox/CardInstruments.cpp
  Sandbox/CardRules.cpp
  Sandbox/ConsoleLogger.cpp
  Sandbox/Constants.cpp
  Sandbox/Database.cpp
  Sandbox/EnteredAddress.cpp
  Sandbox/EnteredCard.cpp
  Sandbox/ErrorFacade.cpp
  Sandbox/Fault.cpp
  Sandbox/Guest.cpp
  Sandbox/Identifiers.cpp
  Sandbox/Journal.cpp
  Sandbox/LogLine.cpp
  Sandbox/LogSink.cpp
  Sandbox/MaskedText.cpp
  Sandbox/Provider.cpp
  Sandbox/ProviderClient.cpp
  Sandbox/Reachability.cpp
  Sandbox/RemoteFileLogger.cpp
  Sandbox/Sandbox.cpp
  Sandbox/SandboxError.cpp
  Sandbox/SandboxHost.cpp
  Sandbox/Schema.cpp
  Sandbox/Service.cpp
  Sandbox/Settings.cpp
  Sandbox/Store.cpp
  Sandbox/Summary.cpp
  Sandbox/TestCards.cpp)
target_link_libraries(HLVSDKPaylevenSandbox
  PUBLIC HLVSDKPaylevenKit
  PRIVATE $<BUILD_INTERFACE:hlv_flags> SQLite::SQLite3 spdlog::spdlog)
# The queue library is headers only. Whether it allocates with aligned_alloc depends by default on
# which header a file includes first, so that has to be said, and said as the kit says it.
target_compile_definitions(HLVSDKPaylevenSandbox PRIVATE
  ASIO_STANDALONE ASIO_NO_DEPRECATED ASIO_DISABLE_VISIBILITY ASIO_DISABLE_STD_ALIGNED_ALLOC)
