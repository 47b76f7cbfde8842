# What the kit costs. `scripts/bench` runs these programs; no test does.
find_package(benchmark REQUIRED)

function(hlv_add_benchmark name)
  add_executable(${name} Benchmarks/${name}.cpp)
  target_link_libraries(${name} PRIVATE hlv_flags HLVSDKPaylevenKit ${ARGN})
endfunction()

hlv_add_benchmark(AtRest)
target_sources(AtRest PRIVATE Benchmarks/Support/Allocations.cpp)
hlv_add_benchmark(OperationsBenchmark benchmark::benchmark)
target_sources(OperationsBenchmark PRIVATE Benchmarks/Support/Allocations.cpp)
hlv_add_benchmark(RealLatency)
hlv_add_benchmark(SynchronizerBenchmark benchmark::benchmark)
hlv_add_benchmark(VirtualLatency)
