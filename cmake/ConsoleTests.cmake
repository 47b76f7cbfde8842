# The console's page, in a browser.
if(NOT HLVSDKPAYLEVENKIT_SANITIZE MATCHES "thread")
  file(GLOB files CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/Tests/Console/*.test.js)
  add_test(NAME Console.InChromium COMMAND ${in_node} --test-concurrency=2 ${files})
  set_tests_properties(Console.InChromium PROPERTIES TIMEOUT 300 LABELS ServicesTests
    ENVIRONMENT "PAYLEVENKIT=$<TARGET_FILE:paylevenkit>")
endif()
