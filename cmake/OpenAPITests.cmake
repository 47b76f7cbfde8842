# The server from outside: its documents, its replies against them, and what many clients
# at once and kills do to it.
set(in_node ${PROJECT_SOURCE_DIR}/Tests/in-node.sh ${PROJECT_BINARY_DIR}/server-tests
  --test --test-reporter=spec)

function(hlv_add_server_test name file)
  add_test(NAME Server.${name} COMMAND ${in_node} ${PROJECT_SOURCE_DIR}/Tests/Server/${file})
  set_tests_properties(Server.${name} PROPERTIES TIMEOUT 300 LABELS ServerTests
    ENVIRONMENT "PAYLEVENKIT=$<TARGET_FILE:paylevenkit>")
endfunction()
hlv_add_server_test(KeepsTheRulesOfItsDocuments drive.test.js)
hlv_add_server_test(RequestsOfManyClientsKeepApart clients.test.js)
hlv_add_server_test(LosesNothingThatWasAnsweredWhenItIsKilled kill.test.js)
hlv_add_server_test(WorksBehindAProxyThatHashesBySandbox nginx.test.js)
