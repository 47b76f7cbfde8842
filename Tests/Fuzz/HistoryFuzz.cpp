// Histories of the kit that bytes choose, with more interference than a walk through all of them
// can afford, held against the same reference model.
#include <fuzzer/FuzzedDataProvider.h>
#include <gtest/gtest.h>

#include "Tests/Explorer/ReferenceModel.h"
#include "Tests/Explorer/Simulation.h"

namespace hlv::testing {
namespace {

class ChosenByBytes final : public Choices, public FuzzedDataProvider {
 public:
  using FuzzedDataProvider::FuzzedDataProvider;
  std::size_t choose(std::size_t count) override {
    return ConsumeIntegralInRange<std::size_t>(0, count - 1);
  }
};

}  // namespace
}  // namespace hlv::testing

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace hlv::testing;
  GTEST_FLAG_SET(break_on_failure, true);
  ChosenByBytes choices(data, size);
  const auto& scenario = allScenarios()[choices.choose(allScenarios().size())];
  Simulation simulation;
  const auto& history = simulation.play(scenario, choices.choose(6), choices);
  const auto violation = ReferenceModel::examine(scenario, history);
  EXPECT_FALSE(violation) << scenario.name << ", event " << violation->event << " should be "
                          << violation->expected;
  return 0;
}
