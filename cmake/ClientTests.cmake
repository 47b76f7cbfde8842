# The host whose services are elsewhere, against a server that replies what a test wants.
hlv_add_tests(ClientTests
  SOURCES Tests/Client/*.cpp
  LIBRARIES HLVSDKPaylevenClient hlv_http hlv_records hlv_beast)
hlv_precompile(ClientTests <nlohmann/json.hpp>)
