# Many sandboxes over HTTP, and the console.
find_package(OpenSSL REQUIRED COMPONENTS Crypto)

# The documents that describe the server become part of the library.
set(openapi_dir ${PROJECT_SOURCE_DIR}/Server/openapi)
set(HLV_OPENAPI_FILES "")
foreach(document backend provider control sandboxes components)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${openapi_dir}/${document}.json)
  file(READ ${openapi_dir}/${document}.json content)
  # Indentation is for whoever reads the files.
  string(REGEX REPLACE "\n +" "\n" content "${content}")
  string(APPEND HLV_OPENAPI_FILES "    {\"${document}\", R\"openapi(${content})openapi\"},\n")
endforeach()
configure_file(Server/Api/OpenAPI.cpp.in ${PROJECT_BINARY_DIR}/Server/OpenAPI.cpp @ONLY)

# And so do the files of the console's page.
set(page_dir ${PROJECT_SOURCE_DIR}/Server/Console/page)
set(HLV_PAGE_FILES "")
function(hlv_add_page_file file name type)
  cmake_path(ABSOLUTE_PATH file BASE_DIRECTORY ${page_dir})
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
  file(READ ${file} content)
  string(APPEND HLV_PAGE_FILES
    "    {\"${name}\", \"${type}; charset=utf-8\", R\"page(${content})page\"},\n")
  set(HLV_PAGE_FILES "${HLV_PAGE_FILES}" PARENT_SCOPE)
endfunction()
hlv_add_page_file(index.html "" text/html)
hlv_add_page_file(console.css console.css text/css)
foreach(script app cards connection diagram dom explain export faults feed main requests sandboxes stored timeline)
  hlv_add_page_file(${script}.js ${script}.js text/javascript)
endforeach()
# What the page refers to.
hlv_add_page_file(${PROJECT_SOURCE_DIR}/docs/failures.md failures.md text/plain)
configure_file(Server/Console/Page.cpp.in ${PROJECT_BINARY_DIR}/Server/Page.cpp @ONLY)

add_library(HLVSDKPaylevenServer STATIC
  Server/Api/ApiHandler.cpp
  Server/Api/BackendResources.cpp
  Server/Api/ControlResources.cpp
  Server/Api/ErrorReplies.cpp
  Server/Api/Exchange.cpp
  Server/Api/Idempotency.cpp
  Server/Api/OpenSandbox.cpp
  Server/Api/ProviderResources.cpp
  Server/Api/Registry+Create.cpp
  Server/Api/Registry.cpp
  Server/Api/RequestLog.cpp
  Server/Api/SandboxResources.cpp
  Server/Console/App.cpp
  Server/Console/ConsoleResources.cpp
  Server/Console/LiveFeed.cpp
  Server/Server.cpp
  ${PROJECT_BINARY_DIR}/Server/OpenAPI.cpp
  ${PROJECT_BINARY_DIR}/Server/Page.cpp)
target_link_libraries(HLVSDKPaylevenServer
  PUBLIC HLVSDKPaylevenSandbox hlv_http hlv_records
  PRIVATE hlv_shipped_flags hlv_beast OpenSSL::Crypto SQLiteCpp)
hlv_precompile(HLVSDKPaylevenServer <SQLiteCpp/SQLiteCpp.h> <nlohmann/json.hpp>)
