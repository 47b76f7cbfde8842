# The services over HTTP: on loopback in one process, and with the command and curl in several.
hlv_add_tests(ServicesTests
  SOURCES
    Tests/Sandbox/SandboxTest.cpp
    Tests/Secrecy/CardDataSearch.cpp
    Tests/Services/ConsoleTests.cpp
    Tests/Services/EndToEndTests.cpp
    Tests/Services/HostileInputTests.cpp
    Tests/Services/IdempotencyTests.cpp
    Tests/Services/OpenAPITests.cpp
    Tests/Services/SecrecyTests.cpp
    Tests/Services/ServicesTest.cpp
    Tests/Services/Talk.cpp
    Tests/Services/TransportTests.cpp
  LIBRARIES HLVSDKPaylevenServices)

add_test(NAME Services.TheManualsExamplesWork
  COMMAND ${PROJECT_SOURCE_DIR}/Tests/Services/curl-examples.sh
          $<TARGET_FILE:paylevenkit> ${PROJECT_SOURCE_DIR}/docs/services.md)
set_tests_properties(Services.TheManualsExamplesWork PROPERTIES
  TIMEOUT 120 LABELS ServicesTests)

add_test(NAME Services.LoseNothingThatWasAnsweredWhenTheyAreKilled
  COMMAND python3 ${PROJECT_SOURCE_DIR}/Tests/Load/kill_under_load.py
          $<TARGET_FILE:paylevenkit> 6)
set_tests_properties(Services.LoseNothingThatWasAnsweredWhenTheyAreKilled PROPERTIES
  TIMEOUT 120 LABELS ServicesTests ENVIRONMENT PYTHONDONTWRITEBYTECODE=1)
