// The kit as an app has it: enabled, with five operations to perform.
//
// Threading: the main thread.
#pragma once

#include <array>
#include <cstddef>
#include <memory>

#include "Benchmarks/Support/Records.h"
#include "Public/HLVSDKPaylevenKit.h"

namespace hlv::bench {

/// What an app gives to the kit to enable it.
std::shared_ptr<HLVSDKConfiguration> makeConfiguration();

/// One at a time, since it installs the platform and the host of the process.
class EnabledKit {
 public:
  EnabledKit(std::shared_ptr<Platform> platform, std::shared_ptr<Host> host, Records& records);
  ~EnabledKit();
  EnabledKit(const EnabledKit&) = delete;
  EnabledKit& operator=(const EnabledKit&) = delete;

  void addFirstCard();
  void addFurtherCard();
  void deleteCard();
  void updateCard();
  void synchronize();

  /// How many operations have reported success to the app. Failures are not counted.
  std::size_t succeeded() const { return succeeded_; }

  /// Runs the final step of a synchronisation on the main queue, so that one thread does it all.
  void synchronizeOnMainQueue();

 private:
  HLVSDKGuestCardCompletion countCard();

  Records& records_;
  const std::shared_ptr<HLVSDKPaymentManager> payments_ = HLVSDKPaymentManager::make();
  std::size_t succeeded_ = 0;
};

struct Operation {
  const char* name;
  void (*start)(EnabledKit&);
};

inline constexpr std::array<Operation, 5> operations = {
    {{"first-card", [](EnabledKit& kit) { kit.addFirstCard(); }},
     {"further-card", [](EnabledKit& kit) { kit.addFurtherCard(); }},
     {"delete", [](EnabledKit& kit) { kit.deleteCard(); }},
     {"update", [](EnabledKit& kit) { kit.updateCard(); }},
     {"synchronise", [](EnabledKit& kit) { kit.synchronize(); }}}};

}  // namespace hlv::bench
