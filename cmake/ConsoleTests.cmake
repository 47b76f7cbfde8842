# The console's page, in a browser.
if(NOT HLVSDKPAYLEVENKIT_SANITIZE MATCHES "thread")
  add_test(NAME Console.InChromium
    COMMAND ${PROJECT_SOURCE_DIR}/Tests/Console/in-chromium.sh
            $<TARGET_FILE:paylevenkit> ${PROJECT_BINARY_DIR}/console-tests)
  set_tests_properties(Console.InChromium PROPERTIES TIMEOUT 300 LABELS ServicesTests)
endif()
