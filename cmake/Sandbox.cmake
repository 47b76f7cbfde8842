# The embedded host SDK and payment provider.
find_package(SQLite3 REQUIRED)
find_package(spdlog REQUIRED)

add_library(HLVSDKPaylevenSandbox STATIC)
add_library(HLVSDKPaylevenKit::Sandbox ALIAS HLVSDKPaylevenSandbox)
set_target_properties(HLVSDKPaylevenSandbox PROPERTIES EXPORT_NAME Sandbox)
target_sources(HLVSDKPaylevenSandbox PRIVATE
  Sandbox/Backend/AddCardBody.cpp
  Sandbox/Backend/Backend.cpp
  Sandbox/Backend/BackendClient.cpp
  Sandbox/Backend/BackendTables.cpp
  Sandbox/Backend/Guest.cpp
  Sandbox/Cards/Calendar.cpp
  Sandbox/Cards/CardBrands.cpp
  Sandbox/Cards/CardRules.cpp
  Sandbox/Logging/ConsoleLogger.cpp
  Sandbox/Logging/LogLine.cpp
  Sandbox/Logging/LogSink.cpp
  Sandbox/Logging/MaskedText.cpp
  Sandbox/Logging/RemoteFileLogger.cpp
  Sandbox/Provider/CardInstruments.cpp
  Sandbox/Provider/Provider.cpp
  Sandbox/Provider/ProviderClient.cpp
  Sandbox/Service/Answers.cpp
  Sandbox/Service/FaultOnTheWay.cpp
  Sandbox/Service/Service.cpp
  Sandbox/Service/Summary.cpp
  Sandbox/Store/Database.cpp
  Sandbox/Store/Identifiers.cpp
  Sandbox/Store/KeptAnswers.cpp
  Sandbox/Store/Schema.cpp
  Sandbox/Store/Settings.cpp
  Sandbox/Store/Store.cpp
  Sandbox/Constants.cpp
  Sandbox/EnteredAddress.cpp
  Sandbox/EnteredCard.cpp
  Sandbox/ErrorFacade.cpp
  Sandbox/Fault.cpp
  Sandbox/Journal.cpp
  Sandbox/Pairs.cpp
  Sandbox/Reachability.cpp
  Sandbox/Sandbox.cpp
  Sandbox/SandboxError.cpp
  Sandbox/SandboxHost.cpp
  Sandbox/Scenes.cpp
  Sandbox/TestCards.cpp
  Sandbox/ToldCall.cpp
  Sandbox/TransportError.cpp)
target_link_libraries(HLVSDKPaylevenSandbox
  PUBLIC HLVSDKPaylevenKit
  PRIVATE $<BUILD_INTERFACE:hlv_shipped_flags> $<BUILD_INTERFACE:hlv_asio> SQLite::SQLite3 spdlog::spdlog)
