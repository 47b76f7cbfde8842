# The sandbox's tests; they open stores with SQLite themselves to make unusable ones.
hlv_add_tests(SandboxTests
  SOURCES
    Tests/Sandbox/CardRulesTests.cpp
    Tests/Sandbox/FaultTests.cpp
    Tests/Sandbox/SecrecyTests.cpp
    Tests/Sandbox/ServicesTests.cpp
    Tests/Sandbox/StoreTests.cpp
  LIBRARIES HLVSDKPaylevenSandbox SQLiteCpp)
