# The embedded host SDK and payment provider.
find_package(ICU REQUIRED COMPONENTS uc)
find_package(SQLiteCpp REQUIRED)
find_package(spdlog REQUIRED)

add_library(HLVSDKPaylevenSandbox STATIC)
add_library(HLVSDKPaylevenKit::Sandbox ALIAS HLVSDKPaylevenSandbox)
set_target_properties(HLVSDKPaylevenSandbox PROPERTIES EXPORT_NAME Sandbox)
target_sources(HLVSDKPaylevenSandbox PRIVATE
  Sandbox/App/SimulatedApp.cpp
  Sandbox/Backend/Backend.cpp
  Sandbox/Backend/BackendClient.cpp
  Sandbox/Backend/BackendTables.cpp
  Sandbox/Backend/Requests.cpp
  Sandbox/Calls/CallHandler.cpp
  Sandbox/Calls/Journal.cpp
  Sandbox/Calls/ReplyQueue.cpp
  Sandbox/Cards/CardBrands.cpp
  Sandbox/Cards/CardRules.cpp
  Sandbox/Cards/EnteredCard.cpp
  Sandbox/Cards/TestCards.cpp
  Sandbox/Errors/ErrorFacade.cpp
  Sandbox/Errors/SandboxError.cpp
  Sandbox/Faults/Fault.cpp
  Sandbox/Faults/FaultTables.cpp
  Sandbox/Host/DeviceHost.cpp
  Sandbox/Logging/Logger.cpp
  Sandbox/Masking/MaskedText.cpp
  Sandbox/Provider/Provider.cpp
  Sandbox/Provider/ProviderClient.cpp
  Sandbox/Records/Times.cpp
  Sandbox/Sandbox.cpp
  Sandbox/Store/Clock.cpp
  Sandbox/Store/Database.cpp
  Sandbox/Store/Identifiers.cpp
  Sandbox/Store/Store.cpp
  Sandbox/Store/StoreLock.cpp
  Sandbox/Testing/Scenarios.cpp)
target_link_libraries(HLVSDKPaylevenSandbox
  PUBLIC HLVSDKPaylevenKit
  PRIVATE $<BUILD_INTERFACE:hlv_shipped_flags> $<BUILD_INTERFACE:hlv_asio> ICU::uc SQLiteCpp
    spdlog::spdlog)
hlv_precompile(HLVSDKPaylevenSandbox <SQLiteCpp/SQLiteCpp.h>)
