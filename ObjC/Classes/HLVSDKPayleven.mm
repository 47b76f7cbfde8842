#import <HLVSDKPaylevenKit/HLVSDKPayleven.h>
#import <HLVSDKPaylevenKit/HLVSDKPaylevenPaymentInstrumentManager.h>
#import <HLVSDKPaylevenKit/HLVSDKPaylevenPaymentInstrumentsSynchronizer.h>

#include <memory>

#include "Async/Once.h"
#include "ObjC/Binding/Held.h"
#include "ObjC/Binding/Strings.h"
#include "ObjC/Binding/Values.h"
#include "ObjC/Foundation/FoundationPlatform.h"
#include "ObjC/Host/Install.h"
#include "ObjC/Host/Services.h"
#include "Platform/SharedSlot.h"
#include "Public/Triggers.h"

using hlv::objc::adapted;
using hlv::objc::fromNSNotification;
using hlv::objc::Held;
using hlv::objc::observe;
using hlv::objc::original;
using hlv::objc::toHost;

// All of these are objects of the app's: the core sees them in calls only.
struct HLVPaylevenCore {
  hlv::SharedSlot<Held> paymentInstrumentsSynchronizer;
  hlv::SharedSlot<Held> paymentInstrumentManager;
  hlv::SharedSlot<Held> configuration;
  hlv::SharedSlot<Held> kitConfiguration;
  hlv::SharedSlot<Held> currentGuest;
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

/// `core` is null in an object that is not initialised.
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
    _core = new HLVPaylevenCore;
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
  if ((self = [super init])) _core = new HLVPaylevenCore;
  return self;
}

- (void)dealloc {
  [[NSNotificationCenter defaultCenter] removeObserver:self];
  delete _core;
  [super dealloc];
}

- (id<HLVSDKPaymentInstrumentManager>)paymentInstrumentManager {
  return load(_core, &HLVPaylevenCore::paymentInstrumentManager);
}

- (void)setPaymentInstrumentManager:(id<HLVSDKPaymentInstrumentManager>)manager {
  store(_core, &HLVPaylevenCore::paymentInstrumentManager, manager);
}

- (id<HLVSDKPaymentInstrumentsSynchronizer>)paymentInstrumentsSynchronizer {
  return load(_core, &HLVPaylevenCore::paymentInstrumentsSynchronizer);
}

- (void)setPaymentInstrumentsSynchronizer:(id<HLVSDKPaymentInstrumentsSynchronizer>)synchronizer {
  store(_core, &HLVPaylevenCore::paymentInstrumentsSynchronizer, synchronizer);
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
  return load(_core, &HLVPaylevenCore::currentGuest);
}

- (void)setCurrentGuest:(HLVSDKGuest*)currentGuest {
  store(_core, &HLVPaylevenCore::currentGuest, currentGuest);
}

- (void)start {
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
  // In this order: an app that follows its guest sets the guest first.
  const id<HLVSDKPaymentInstrumentsSynchronizer> synchronizer =
      [self paymentInstrumentsSynchronizer];
  HLVSDKGuest* const guest = [self currentGuest];
  if ([[guest paylevenToken] length] == 0) return;
  [synchronizer synchronizePaymentInstrumentsForGuest:guest];
}

- (void)handleUIApplicationWillEnterForegroundNotification:(NSNotification*)notification {
  if (hlv::isActiveSessionAuthorized()) [self synchronizePaymentInstruments];
}

- (void)handleAuthorizationDidChangeNotification:(NSNotification*)notification {
  if (hlv::saysThatTheGuestIsAuthorized(fromNSNotification(notification))) {
    [self synchronizePaymentInstruments];
  }
}

- (void)handleReachabilityChangedNotification:(NSNotification*)notification {
  if (hlv::isActiveSessionAuthorized() &&
      hlv::saysThatTheNetworkTurnedReachable(fromNSNotification(notification))) {
    [self synchronizePaymentInstruments];
  }
}

+ (void)resetSharedInstance {
  sharedOnce().reset();
  sharedSlot().store(nullptr);
}

+ (void)setSharedInstance:(HLVSDKPayleven*)instance {
  sharedSlot().store(adapted<Held>(instance));
}

@end
