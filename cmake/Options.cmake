# What a build can choose, and the flags that every part shares.
include(CMakeDependentOption)
option(BUILD_SHARED_LIBS "Build the kit as a shared library" OFF)
option(HLVSDKPAYLEVENKIT_SANDBOX "Build the sandbox" ${PROJECT_IS_TOP_LEVEL})
cmake_dependent_option(HLVSDKPAYLEVENKIT_SERVER
  "Build the server and the paylevenkit command, and the client that they need"
  ${PROJECT_IS_TOP_LEVEL} "HLVSDKPAYLEVENKIT_SANDBOX" OFF)
cmake_dependent_option(HLVSDKPAYLEVENKIT_CLIENT
  "Build the client of a server elsewhere" OFF
  "HLVSDKPAYLEVENKIT_SANDBOX;NOT HLVSDKPAYLEVENKIT_SERVER" ${HLVSDKPAYLEVENKIT_SERVER})
option(HLVSDKPAYLEVENKIT_INSTALL "Install what is built" ${PROJECT_IS_TOP_LEVEL})
option(HLVSDKPAYLEVENKIT_OBJC "Build the kit for Objective-C apps; needs clang" OFF)
option(HLVSDKPAYLEVENKIT_TESTS "Build the tests, of the Objective-C classes where these are built" OFF)
option(HLVSDKPAYLEVENKIT_BENCHMARKS "Build the programs that measure the kit" OFF)
# On in the presets; a consumer's newer compiler must not fail over a new warning.
option(HLVSDKPAYLEVENKIT_STRICT "Treat warnings as errors" OFF)
option(HLVSDKPAYLEVENKIT_COVERAGE "Let the kit count which of its lines ran" OFF)
set(HLVSDKPAYLEVENKIT_SANITIZE "" CACHE STRING "Sanitizers, e.g. address,undefined or thread")

set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

add_library(hlv_flags INTERFACE)
target_compile_features(hlv_flags INTERFACE cxx_std_20)
target_compile_options(hlv_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor
  # g++ 12 sees overlaps in std::string's own code when it optimises (its bug 105651).
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
  # Of what a lock guards (Values/Mutex.h).
  $<$<CXX_COMPILER_ID:Clang,AppleClang>:-Wthread-safety>
  $<$<BOOL:${HLVSDKPAYLEVENKIT_STRICT}>:-Werror>
  # Errors and log lines carry source paths; those of the build machine are nobody's business.
  -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=)
# Binding at a first call would write the registers to the stack, and with them the end of whatever
# was copied last, a card's data for one.
target_link_options(hlv_flags INTERFACE $<$<PLATFORM_ID:Linux>:LINKER:-z,now>)
if(HLVSDKPAYLEVENKIT_SANITIZE)
  target_compile_options(hlv_flags INTERFACE
    -fsanitize=${HLVSDKPAYLEVENKIT_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  # What clang 14 writes before each function for this check cannot stand before a coroutine.
  target_compile_options(hlv_flags INTERFACE
    $<$<COMPILE_LANG_AND_ID:CXX,Clang>:-fno-sanitize=function>)
  target_link_options(hlv_flags INTERFACE -fsanitize=${HLVSDKPAYLEVENKIT_SANITIZE})
  # What lies behind the last element of a container is nobody's, although it may be allocated.
  target_compile_definitions(hlv_flags INTERFACE _GLIBCXX_ASSERTIONS)
endif()

# What is shipped. A thread may be at work to the very end of its process, so the exit destroys
# nothing that it may ask for.
add_library(hlv_shipped_flags INTERFACE)
target_link_libraries(hlv_shipped_flags INTERFACE hlv_flags)
target_compile_options(hlv_shipped_flags INTERFACE
  $<$<CXX_COMPILER_ID:Clang>:-Wexit-time-destructors>)

# The queue library is headers only, and its symbols stay inside. Left to itself it chooses its
# allocator by the headers that come before its own, and two sources of one program may then
# disagree; so every part that uses it takes it from here.
add_library(hlv_asio INTERFACE)
target_compile_definitions(hlv_asio INTERFACE
  ASIO_STANDALONE ASIO_NO_DEPRECATED ASIO_DISABLE_VISIBILITY ASIO_DISABLE_STD_ALIGNED_ALLOC)

# Headers of libraries that are read once for a target rather than for each of its sources. Only where
# the tests are built: a release shows that each source includes what it needs.
function(hlv_precompile target)
  if(HLVSDKPAYLEVENKIT_TESTS)
    target_precompile_headers(${target} PRIVATE ${ARGN})
  endif()
endfunction()
