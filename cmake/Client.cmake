# The JSON of records, and the host whose backend and provider are services elsewhere.
find_package(nlohmann_json REQUIRED)

add_library(hlv_records STATIC
  Sandbox/JSON/CardRecords.cpp
  Sandbox/JSON/FaultRecords.cpp
  Sandbox/JSON/InstrumentRecords.cpp
  Sandbox/JSON/Json.cpp
  Sandbox/JSON/SandboxRecords.cpp)
set_target_properties(hlv_records PROPERTIES
  OUTPUT_NAME HLVSDKPaylevenRecords EXPORT_NAME Records)
target_link_libraries(hlv_records
  PUBLIC HLVSDKPaylevenSandbox $<BUILD_INTERFACE:nlohmann_json::nlohmann_json>
  PRIVATE $<BUILD_INTERFACE:hlv_shipped_flags>)

add_library(HLVSDKPaylevenClient STATIC)
add_library(HLVSDKPaylevenKit::Client ALIAS HLVSDKPaylevenClient)
set_target_properties(HLVSDKPaylevenClient PROPERTIES EXPORT_NAME Client)
target_sources(HLVSDKPaylevenClient PRIVATE
  Client/HttpClient.cpp
  Client/RemoteBackend.cpp
  Client/RemoteHost.cpp
  Client/RemoteProvider.cpp
  Client/RemoteTester.cpp
  Client/Sandboxes.cpp
  Client/ServiceURL.cpp)
target_link_libraries(HLVSDKPaylevenClient
  PUBLIC HLVSDKPaylevenSandbox
  PRIVATE $<BUILD_INTERFACE:hlv_shipped_flags> hlv_beast hlv_records)
hlv_precompile(hlv_records <nlohmann/json.hpp>)
hlv_precompile(HLVSDKPaylevenClient <nlohmann/json.hpp>)
