# The HTTP listener. It knows nothing of what it serves.
find_package(nlohmann_json REQUIRED)

add_library(hlv_http STATIC
  Server/Http/Connection.cpp
  Server/Http/EventLoops.cpp
  Server/Http/HttpError.cpp
  Server/Http/HttpListener.cpp
  Server/Http/ReplyBytes.cpp
  Server/Http/RequestHead.cpp)
target_compile_features(hlv_http PUBLIC cxx_std_20)
target_include_directories(hlv_http PUBLIC ${PROJECT_SOURCE_DIR})
target_link_libraries(hlv_http
  PUBLIC nlohmann_json::nlohmann_json
  PRIVATE hlv_shipped_flags hlv_beast)
