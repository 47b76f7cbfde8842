# The fuzz targets, and for each a test that runs it over its corpus and then over a fixed number of
# inputs more, the same ones every time.
add_custom_target(FuzzTargets)

function(hlv_add_fuzz_target name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "RUNS" "LIBRARIES")
  add_executable(${name} Tests/Fuzz/${name}.cpp)
  target_link_libraries(${name} PRIVATE hlv_flags ${arg_LIBRARIES} GTest::gtest)
  target_link_options(${name} PRIVATE -fsanitize=fuzzer)
  add_dependencies(FuzzTargets ${name})
  file(GLOB corpus CONFIGURE_DEPENDS Tests/Fuzz/corpus/${name}/*)
  list(JOIN corpus "," corpus)
  file(WRITE ${PROJECT_BINARY_DIR}/${name}.corpus "${corpus}")
  # Addresses, the words of a dictionary and the names of inputs may look like card numbers; none of
  # them goes into the log.
  add_test(NAME Fuzz.${name}
    COMMAND ${name} -seed=1 -runs=${arg_RUNS} -max_len=200 -len_control=0
            -seed_inputs=@${name}.corpus -verbosity=0 -print_funcs=0 -use_cmp=0)
  set_tests_properties(Fuzz.${name} PROPERTIES TIMEOUT 300)
  # The store of an input lives for milliseconds, and no disk need see it.
  if(IS_DIRECTORY /dev/shm)
    set_tests_properties(Fuzz.${name} PROPERTIES ENVIRONMENT TMPDIR=/dev/shm)
  endif()
endfunction()

hlv_add_fuzz_target(CardInputFuzz RUNS 10000 LIBRARIES HLVSDKPaylevenSandbox)
hlv_add_fuzz_target(GuestLifeFuzz RUNS 150 LIBRARIES HLVSDKPaylevenSandbox)
hlv_add_fuzz_target(HistoryFuzz RUNS 1500 LIBRARIES hlv_explorer)
