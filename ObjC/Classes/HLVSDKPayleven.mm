#import <HLVSDKPaylevenKit/HLVSDKPayleven.h>
#import <HLVSDKPaylevenKit/HLVSDKPaylevenPaymentInstrumentManager.h>
#import <HLVSDKPaylevenKit/HLVSDKPaylevenPaymentInstrumentsSynchronizer.h>

#include <memory>

#include "Async/Once.h"
#include "ObjC/Binding/Crossing.h"
#include "ObjC/Binding/Director.h"
#include "ObjC/Binding/Values.h"
#include "ObjC/Foundation/FoundationPlatform.h"
#include "ObjC/Host/Clients.h"
#include "ObjC/Host/Install.h"
#include "ObjC/Host/Records.h"
#include "ObjC/Host/Services.h"
#include "Platform/SharedSlot.h"
#include "Public/HLVSDKPayleven.h"
#include "Values/Send.h"

using CoreKit = hlv::HLVSDKPayleven;
using hlv::send;
using hlv::objc::adapted;
using hlv::objc::fromNSNotification;
using hlv::objc::Guest;
using hlv::objc::Held;
using hlv::objc::InstrumentsSynchronizer;
using hlv::objc::observe;
using hlv::objc::original;
using hlv::objc::toHost;

namespace {

class KitDirector final : public hlv::objc::Director<CoreKit, HLVSDKPayleven> {
 public:
  using Director::Director;

  void synchronizePaymentInstruments() override { [*object() synchronizePaymentInstruments]; }
};

}  // namespace

// What the core has no use for stays an object of the app's.
struct HLVPaylevenCore {
  std::shared_ptr<KitDirector> kit;
  hlv::SharedSlot<Held> configuration;
  hlv::SharedSlot<Held> kitConfiguration;
  hlv::SharedSlot<Held> paymentInstrumentManager;
};

@implementation HLVSDKPayleven

// Neither is destroyed at exit, when a thread may still enable the kit.

static hlv::Once& sharedOnce() {
  static auto& once = *new hlv::Once;
  return once;
}

static hlv::SharedSlot<Held>& sharedSlot() {
  static auto& slot = *new hlv::SharedSlot<Held>;
  return slot;
}

/// Null for an object that is not initialised.
static std::shared_ptr<KitDirector> coreOf(HLVSDKPayleven* object) {
  return object->_core ? object->_core->kit : nullptr;
}

static id load(HLVPaylevenCore* core, hlv::SharedSlot<Held> HLVPaylevenCore::*slot) {
  return core ? original((core->*slot).load()) : nil;
}

static void store(HLVPaylevenCore* core, hlv::SharedSlot<Held> HLVPaylevenCore::*slot, id object) {
  if (core) (core->*slot).store(adapted<Held>(object));
}

+ (void)initialize {
  hlv::objc::install();
}

+ (void)enableWithConfiguration:(HLVSDKConfiguration*)configuration {
  id entry = nil;
  for (id candidate in [configuration kits]) {
    if ([toHost(candidate) kit] == [self class]) entry = candidate;
  }
  id const record = [toHost(entry) configuration];
  NSString* fault = nil;
  if (!entry) {
    fault = @"Configuration must have HLVSDKPaylevenKit in kits array";
  } else if (![record isKindOfClass:[HLVSDKPaylevenKitConfiguration class]]) {
    fault = @"Configuration for PaylevenKit must be kind of HLVSDKPaylevenKitConfiguration class";
  } else if (![record paymentKey]) {
    fault = @"Configuration for PaylevenKit must have payment key";
  }
  if (fault) return [HLVSDKAsserts handleAssertWithMessage:fault];
  [HLVSDKPayleven sharedInstanceWithConfiguration:configuration paylevenKitConfiguration:record];
}

+ (instancetype)sharedInstance {
  return original(sharedSlot().load());
}

+ (instancetype)sharedInstanceWithConfiguration:(HLVSDKConfiguration*)configuration
                       paylevenKitConfiguration:(HLVSDKPaylevenKitConfiguration*)kitConfiguration {
  sharedOnce().run([&] {
    [self setSharedInstance:[[[HLVSDKPayleven alloc] initWithConfiguration:configuration
                                                  paylevenKitConfiguration:kitConfiguration]
                                autorelease]];
  });
  return [self sharedInstance];
}

- (instancetype)initWithConfiguration:(HLVSDKConfiguration*)configuration
             paylevenKitConfiguration:(HLVSDKPaylevenKitConfiguration*)kitConfiguration {
  if ((self = [super init])) {
    _core = new HLVPaylevenCore{.kit = std::make_shared<KitDirector>(self)};
    [self setConfiguration:configuration];
    [self setKitConfiguration:kitConfiguration];
    [self setCurrentGuest:[HLVSDKGuest currentGuest]];
    [self setUpPaymentManager];
    [self setUpPaymentInstrumentsSynchronizer];
    observe(self, @selector(handleUIApplicationWillEnterForegroundNotification:),
            hlv::objc::toNSString(hlv::UIApplicationWillEnterForegroundNotification));
    observe(self, @selector(handleAuthorizationDidChangeNotification:),
            kHLVSDKDidChangeAuthorizationStatusNotification);
    observe(self, @selector(handleReachabilityChangedNotification:),
            HLVSDKReachabilityDidChangeReachabilityStateNotification);
  }
  return self;
}

- (instancetype)init {
  if ((self = [super init]))
    _core = new HLVPaylevenCore{.kit = std::make_shared<KitDirector>(self)};
  return self;
}

- (void)dealloc {
  [[NSNotificationCenter defaultCenter] removeObserver:self];
  delete _core;
  [super dealloc];
}

#ifdef GNUSTEP
- (oneway void)release {
  auto* const reference = _core ? &_core->kit->reference() : nullptr;
  if (hlv::objc::WeakObject::wasLastRelease(self, reference)) [self dealloc];
}
#endif

- (id<HLVSDKPaymentInstrumentManager>)paymentInstrumentManager {
  return load(_core, &HLVPaylevenCore::paymentInstrumentManager);
}

- (void)setPaymentInstrumentManager:(id<HLVSDKPaymentInstrumentManager>)manager {
  store(_core, &HLVPaylevenCore::paymentInstrumentManager, manager);
}

- (id<HLVSDKPaymentInstrumentsSynchronizer>)paymentInstrumentsSynchronizer {
  return original(send(coreOf(self), &KitDirector::paymentInstrumentsSynchronizer));
}

- (void)setPaymentInstrumentsSynchronizer:(id<HLVSDKPaymentInstrumentsSynchronizer>)synchronizer {
  if (const auto kit = coreOf(self)) {
    kit->setPaymentInstrumentsSynchronizer(adapted<InstrumentsSynchronizer>(synchronizer));
  }
}

- (HLVSDKConfiguration*)configuration {
  return load(_core, &HLVPaylevenCore::configuration);
}

- (void)setConfiguration:(HLVSDKConfiguration*)configuration {
  store(_core, &HLVPaylevenCore::configuration, configuration);
}

- (HLVSDKPaylevenKitConfiguration*)kitConfiguration {
  return load(_core, &HLVPaylevenCore::kitConfiguration);
}

- (void)setKitConfiguration:(HLVSDKPaylevenKitConfiguration*)kitConfiguration {
  store(_core, &HLVPaylevenCore::kitConfiguration, kitConfiguration);
}

- (HLVSDKGuest*)currentGuest {
  return original(send(coreOf(self), &KitDirector::currentGuest));
}

- (void)setCurrentGuest:(HLVSDKGuest*)currentGuest {
  send(coreOf(self), &KitDirector::setCurrentGuest, adapted<Guest>(currentGuest));
}

- (void)start {
  send(coreOf(self), &KitDirector::start);
}

- (void)setUpPaymentManager {
  PLVInAppClient* const client = [PLVInAppClient sharedInstance];
  [client registerWithAPIKey:[[self kitConfiguration] paymentKey]];
  [self setPaymentInstrumentManager:[[[HLVSDKPaylevenPaymentInstrumentManager alloc]
                                        initWithAPIManager:[HLVSDKAPIManager manager]
                                            paylevenClient:client
                                              reachability:[HLVSDKReachability sharedReachability]]
                                        autorelease]];
}

- (void)setUpPaymentInstrumentsSynchronizer {
  [self setPaymentInstrumentsSynchronizer:[[[HLVSDKPaylevenPaymentInstrumentsSynchronizer alloc]
                                              initWithAPIManager:[HLVSDKAPIManager manager]
                                                  paylevenClient:[PLVInAppClient sharedInstance]]
                                              autorelease]];
}

- (void)synchronizePaymentInstruments {
  if (const auto kit = coreOf(self)) kit->CoreKit::synchronizePaymentInstruments();
}

- (void)handleUIApplicationWillEnterForegroundNotification:(NSNotification*)notification {
  send(coreOf(self), &KitDirector::handleUIApplicationWillEnterForegroundNotification,
       fromNSNotification(notification));
}

- (void)handleAuthorizationDidChangeNotification:(NSNotification*)notification {
  send(coreOf(self), &KitDirector::handleAuthorizationDidChangeNotification,
       fromNSNotification(notification));
}

- (void)handleReachabilityChangedNotification:(NSNotification*)notification {
  send(coreOf(self), &KitDirector::handleReachabilityChangedNotification,
       fromNSNotification(notification));
}

+ (void)resetSharedInstance {
  sharedOnce().reset();
  sharedSlot().store(nullptr);
}

+ (void)setSharedInstance:(HLVSDKPayleven*)instance {
  sharedSlot().store(adapted<Held>(instance));
}

@end
