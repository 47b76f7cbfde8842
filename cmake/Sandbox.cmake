# The embedded host SDK and payment provider.
find_package(SQLiteCpp REQUIRED)
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
  Sandbox/Calls/ReplyQueue.cpp
  Sandbox/Calls/CallHandler.cpp
  Sandbox/Faults/FaultTables.cpp
  Sandbox/Calls/Service.cpp
  Sandbox/Calls/Summary.cpp
  Sandbox/Cards/Calendar.cpp
  Sandbox/Cards/CardBrands.cpp
  Sandbox/Cards/CardRules.cpp
  Sandbox/Logging/ConsoleLogger.cpp
  Sandbox/Logging/LogLine.cpp
  Sandbox/Logging/LogSink.cpp
  Sandbox/Masking/MaskedText.cpp
  Sandbox/Masking/NumberParts.cpp
  Sandbox/Logging/RemoteFileLogger.cpp
  Sandbox/Provider/CardInstruments.cpp
  Sandbox/Provider/Provider.cpp
  Sandbox/Provider/ProviderClient.cpp
  Sandbox/Store/Clock.cpp
  Sandbox/Store/Database.cpp
  Sandbox/Store/Identifiers.cpp
  Sandbox/Store/KeptReplies.cpp
  Sandbox/Store/Schema.cpp
  Sandbox/Store/Settings.cpp
  Sandbox/Store/Store.cpp
  Sandbox/Store/StoreLock.cpp
  Sandbox/Testing/Reset.cpp
  Sandbox/Testing/Scenarios.cpp
  Sandbox/Host/Constants.cpp
  Sandbox/Records/EnteredAddress.cpp
  Sandbox/Cards/EnteredCard.cpp
  Sandbox/Errors/ErrorFacade.cpp
  Sandbox/Faults/Fault.cpp
  Sandbox/Calls/Journal.cpp
  Sandbox/Records/Pairs.cpp
  Sandbox/Calls/Reachability.cpp
  Sandbox/Sandbox.cpp
  Sandbox/Errors/SandboxError.cpp
  Sandbox/Host/SandboxHost.cpp
  Sandbox/Cards/TestCards.cpp
  Sandbox/RecordedCall.cpp
  Sandbox/Errors/TransportError.cpp)
target_link_libraries(HLVSDKPaylevenSandbox
  PUBLIC HLVSDKPaylevenKit
  PRIVATE $<BUILD_INTERFACE:hlv_shipped_flags> $<BUILD_INTERFACE:hlv_asio> SQLiteCpp spdlog::spdlog)
hlv_precompile(HLVSDKPaylevenSandbox <SQLiteCpp/SQLiteCpp.h>)
