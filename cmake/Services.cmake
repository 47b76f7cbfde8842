# The sandbox's two services over HTTP, host clients that speak to them, and the console.
find_package(nlohmann_json REQUIRED)
find_package(OpenSSL REQUIRED COMPONENTS Crypto)
find_package(PkgConfig REQUIRED)
pkg_check_modules(HTTPLIB REQUIRED IMPORTED_TARGET cpp-httplib)

# The documents that describe the services become part of the library.
set(openapi_dir ${PROJECT_SOURCE_DIR}/Services/openapi)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
  ${openapi_dir}/backend.json ${openapi_dir}/provider.json)
file(READ ${openapi_dir}/backend.json HLV_BACKEND_OPENAPI)
file(READ ${openapi_dir}/provider.json HLV_PROVIDER_OPENAPI)
configure_file(${openapi_dir}/OpenAPI.cpp.in ${PROJECT_BINARY_DIR}/Services/OpenAPI.cpp @ONLY)

# And so do the files of the console's page.
set(page_dir ${PROJECT_SOURCE_DIR}/Services/Console/page)
set(HLV_PAGE_FILES "")
function(hlv_add_page_file file name type)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${page_dir}/${file})
  file(READ ${page_dir}/${file} content)
  string(APPEND HLV_PAGE_FILES
    "    {\"${name}\", \"${type}; charset=utf-8\", R\"page(${content})page\"},\n")
  set(HLV_PAGE_FILES "${HLV_PAGE_FILES}" PARENT_SCOPE)
endfunction()
hlv_add_page_file(index.html "" text/html)
hlv_add_page_file(console.css console.css text/css)
foreach(script app cards connection diagram dom export main story truth)
  hlv_add_page_file(${script}.js ${script}.js text/javascript)
endforeach()
configure_file(Services/Console/Page.cpp.in ${PROJECT_BINARY_DIR}/Services/Page.cpp @ONLY)

add_library(HLVSDKPaylevenServices STATIC
  Services/BackendRecords.cpp
  Services/BackendResources.cpp
  Services/Console/App.cpp
  Services/Console/Console.cpp
  Services/Console/ConsoleRecords.cpp
  Services/Console/ConsoleResources.cpp
  Services/Console/LiveStory.cpp
  Services/Http/AnswerHead.cpp
  Services/Http/Connection.cpp
  Services/Http/DirectAnswer.cpp
  Services/Http/Door.cpp
  Services/Http/ErrorBody.cpp
  Services/Http/NamedDoor.cpp
  Services/Http/Percent.cpp
  Services/Http/Routes.cpp
  Services/Http/Socket.cpp
  Services/Idempotency.cpp
  Services/Json.cpp
  Services/KeysInUse.cpp
  Services/ProviderRecords.cpp
  Services/ProviderResources.cpp
  Services/Remote/CallThreads.cpp
  Services/Remote/HttpClient.cpp
  Services/Remote/RemoteBackend.cpp
  Services/Remote/RemoteHost.cpp
  Services/Remote/RemoteProvider.cpp
  Services/Remote/RemoteTester.cpp
  Services/Remote/ServiceURL.cpp
  Services/Services.cpp
  Services/TesterRecords.cpp
  Services/TesterResources.cpp
  ${PROJECT_BINARY_DIR}/Services/OpenAPI.cpp
  ${PROJECT_BINARY_DIR}/Services/Page.cpp)
target_link_libraries(HLVSDKPaylevenServices
  PUBLIC HLVSDKPaylevenSandbox nlohmann_json::nlohmann_json
  PRIVATE hlv_shipped_flags PkgConfig::HTTPLIB OpenSSL::Crypto)
