# The server from outside: its documents, its replies against them, and what many clients
# at once and kills do to it.
set(in_node ${PROJECT_SOURCE_DIR}/Tests/in-node.sh ${PROJECT_BINARY_DIR}/server-tests
  --test --test-reporter=spec)

function(hlv_add_server_test name)
  list(TRANSFORM ARGN PREPEND ${PROJECT_SOURCE_DIR}/Tests/Server/ OUTPUT_VARIABLE files)
  add_test(NAME Server.${name} COMMAND ${in_node} --test-concurrency=2 ${files})
  set_tests_properties(Server.${name} PROPERTIES TIMEOUT 300 LABELS ServerTests
    ENVIRONMENT "PAYLEVENKIT=$<TARGET_FILE:paylevenkit>")
endfunction()
hlv_add_server_test(KeepsTheRulesOfItsDocuments drive.test.js)
hlv_add_server_test(DoesAsItsManualSays
  again.test.js app.test.js hostile.test.js log.test.js sandboxes.test.js)
hlv_add_server_test(RequestsOfManyClientsKeepApart clients.test.js)
hlv_add_server_test(LosesNothingThatWasAnsweredWhenItIsKilled kill.test.js)
hlv_add_server_test(WorksBehindAProxyThatHashesBySandbox nginx.test.js)
