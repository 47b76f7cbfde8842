# The server: its listener alone, and all of it in one process with clients.
hlv_add_tests(HttpTests
  SOURCES
    Tests/Server/HttpTests.cpp
  LIBRARIES hlv_http hlv_beast)
hlv_add_tests(ServerTests
  SOURCES
    Tests/Server/EndToEndTests.cpp
    Tests/Server/ManySandboxesTests.cpp
  LIBRARIES HLVSDKPaylevenServer HLVSDKPaylevenClient hlv_beast SQLiteCpp)
hlv_precompile(ServerTests <nlohmann/json.hpp>)
