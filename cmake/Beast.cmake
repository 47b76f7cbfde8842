# HTTP, sockets and timers: Boost.Beast, Boost.Asio and Boost.URL, compiled once in one source file.
# Boost's headers are the system's, so that their warnings are nobody's.
find_package(Boost 1.81 REQUIRED)
find_package(Threads REQUIRED)

add_library(hlv_beast STATIC Server/Http/Beast.cpp)
set_target_properties(hlv_beast PROPERTIES OUTPUT_NAME HLVSDKPaylevenBeast EXPORT_NAME Beast)
target_compile_definitions(hlv_beast PUBLIC
  BOOST_ALL_NO_LIB
  BOOST_ASIO_SEPARATE_COMPILATION
  BOOST_ASIO_NO_DEPRECATED
  BOOST_BEAST_SEPARATE_COMPILATION)
target_include_directories(hlv_beast SYSTEM PUBLIC $<BUILD_INTERFACE:${Boost_INCLUDE_DIRS}>)
target_link_libraries(hlv_beast PRIVATE $<BUILD_INTERFACE:hlv_flags> PUBLIC Threads::Threads)
target_compile_options(hlv_beast PRIVATE -w)
