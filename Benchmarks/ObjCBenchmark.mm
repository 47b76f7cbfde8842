// What one call through the Objective-C classes costs: the update of a card, to a backend that
// answers inside the call. Five fields of an address cross from the app and as many to the backend,
// and the completion's block goes to the backend as it is.
#import <HLVSDKPaylevenKit/HLVSDKPaylevenKit.h>
#include <benchmark/benchmark.h>

/// Answers with success.
@interface BenchBackend : HLVSDKAPIManager
@end

@implementation BenchBackend
- (void)updateCreditCard:(NSString*)ID
          billingAddress:(NSDictionary*)billingAddress
                forGuest:(HLVSDKGuest*)guest
              completion:(void (^)(HLVSDKGuest*, HLVSDKCreditCard*, NSError*))completion {
  if (ID && [billingAddress count] == 5) completion(guest, nil, nil);
}
@end

@interface BenchAddress : HLVSDKPaymentBillingAddress
@end

@implementation BenchAddress
- (NSString*)countryCode {
  return @"DE";
}
- (NSString*)street {
  return @"Street 1";
}
- (NSString*)city {
  return @"Berlin";
}
- (NSString*)zip {
  return @"10115";
}
- (NSString*)businessName {
  return @"Halvo GmbH";
}
@end

namespace hlv::bench {

using Completion = void (^)(HLVSDKGuest*, HLVSDKCreditCard*, NSError*);

/// Has a name of its own, so that a profiler can count in here only.
[[gnu::noinline]] void performOnce(HLVSDKPaylevenPaymentInstrumentManager* manager,
                                   BenchAddress* address, Completion completion) {
  @autoreleasepool {
    [manager updatePaymentInstrument:@"card-1"
                      billingAddress:address
                            forGuest:nil
                          completion:completion];
  }
}

}  // namespace hlv::bench

namespace {

void update(benchmark::State& state) {
  NSAutoreleasePool* const pool = [NSAutoreleasePool new];
  auto* const backend = [[BenchBackend new] autorelease];
  auto* const manager =
      [[[HLVSDKPaylevenPaymentInstrumentManager alloc] initWithAPIManager:backend
                                                           paylevenClient:nil
                                                             reachability:nil] autorelease];
  auto* const address = [[BenchAddress new] autorelease];
  __block std::size_t answered = 0;
  const hlv::bench::Completion count = ^(HLVSDKGuest*, HLVSDKCreditCard*, NSError*) {
    ++answered;
  };
  for ([[maybe_unused]] auto _ : state) hlv::bench::performOnce(manager, address, count);
  if (answered != static_cast<std::size_t>(state.iterations())) state.SkipWithError("it failed");
  [pool drain];
}

// Always as many, so that the instructions of one can be computed.
BENCHMARK(update)->Iterations(20'000);

}  // namespace

BENCHMARK_MAIN();
