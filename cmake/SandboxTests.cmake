# The sandbox's tests; they open stores with SQLite themselves to make unusable ones.
hlv_add_tests(SandboxTests SOURCES Tests/Sandbox/*.cpp LIBRARIES HLVSDKPaylevenSandbox SQLiteCpp)
