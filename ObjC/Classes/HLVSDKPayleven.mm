#import <HLVSDKPaylevenKit/HLVSDKPayleven.h>

#include <memory>
#include <mutex>
#include <utility>

#include "ObjC/Binding/Install.h"
#include "ObjC/Binding/Values.h"
#include "ObjC/Classes/Cores.h"
#include "ObjC/Host/Configuration.h"
#include "ObjC/Host/KitProtocols.h"
#include "ObjC/Host/Records.h"
#include "Public/HLVSDKPayleven.h"

using hlv::objc::adapted;
using hlv::objc::Configuration;
using hlv::objc::fromNSNotification;
using hlv::objc::Guest;
using hlv::objc::InstrumentManager;
using hlv::objc::InstrumentsSynchronizer;
using hlv::objc::KitConfiguration;
using hlv::objc::original;

struct HLVPaylevenCore {
  std::shared_ptr<hlv::HLVSDKPayleven> kit;
  id<HLVSDKPaymentInstrumentManager> manager = nil;
  id<HLVSDKPaymentInstrumentsSynchronizer> synchronizer = nil;
};

@interface HLVSDKPayleven (Core)
- (instancetype)initWithCore:(std::shared_ptr<hlv::HLVSDKPayleven>)kit;
@end

@implementation HLVSDKPayleven

// The object that stands for the core's shared instance, so that it is always the same.
static std::mutex sharedMutex;
static HLVSDKPayleven* sharedObject;

static void replaceSharedObject(HLVSDKPayleven* object) {
  [object retain];
  {
    const std::lock_guard lock(sharedMutex);
    std::swap(object, sharedObject);
  }
  [object release];
}

+ (void)initialize {
  hlv::objc::install();
}

+ (void)enableWithConfiguration:(HLVSDKConfiguration*)configuration {
  hlv::HLVSDKPayleven::enableWithConfiguration(adapted<Configuration>(configuration),
                                               hlv::objc::kitClass(self));
}

+ (instancetype)sharedInstance {
  const auto kit = hlv::HLVSDKPayleven::sharedInstance();
  if (!kit) return nil;
  const std::lock_guard lock(sharedMutex);
  if (!sharedObject || sharedObject->_core->kit != kit) {
    [sharedObject autorelease];
    sharedObject = [[HLVSDKPayleven alloc] initWithCore:kit];
  }
  return [[sharedObject retain] autorelease];
}

+ (instancetype)sharedInstanceWithConfiguration:(HLVSDKConfiguration*)configuration
                       paylevenKitConfiguration:(HLVSDKPaylevenKitConfiguration*)kitConfiguration {
  hlv::HLVSDKPayleven::sharedInstanceWithConfiguration(adapted<Configuration>(configuration),
                                                       adapted<KitConfiguration>(kitConfiguration));
  return [self sharedInstance];
}

- (instancetype)initWithCore:(std::shared_ptr<hlv::HLVSDKPayleven>)kit {
  if ((self = [super init])) {
    _core = new HLVPaylevenCore{std::move(kit)};
    [self takeManager];
    [self takeSynchronizer];
  }
  return self;
}

- (instancetype)initWithConfiguration:(HLVSDKConfiguration*)configuration
             paylevenKitConfiguration:(HLVSDKPaylevenKitConfiguration*)kitConfiguration {
  return [self initWithCore:hlv::HLVSDKPayleven::initWithConfiguration(
                                adapted<Configuration>(configuration),
                                adapted<KitConfiguration>(kitConfiguration))];
}

- (instancetype)init {
  return [self initWithConfiguration:nil paylevenKitConfiguration:nil];
}

- (void)dealloc {
  [_core->manager release];
  [_core->synchronizer release];
  delete _core;
  [super dealloc];
}

/// Puts an object before the core's manager: the app's own where it set one.
- (void)takeManager {
  const auto manager = _core->kit->paymentInstrumentManager();
  const auto own = std::dynamic_pointer_cast<hlv::HLVSDKPaylevenPaymentInstrumentManager>(manager);
  id before = _core->manager;
  _core->manager =
      own ? [[HLVSDKPaylevenPaymentInstrumentManager alloc] initWithCore:own]
          : static_cast<id<HLVSDKPaymentInstrumentManager>>([original(manager) retain]);
  [before release];
}

- (void)takeSynchronizer {
  const auto synchronizer = _core->kit->paymentInstrumentsSynchronizer();
  const auto own =
      std::dynamic_pointer_cast<hlv::HLVSDKPaylevenPaymentInstrumentsSynchronizer>(synchronizer);
  id before = _core->synchronizer;
  _core->synchronizer =
      own ? [[HLVSDKPaylevenPaymentInstrumentsSynchronizer alloc] initWithCore:own]
          : static_cast<id<HLVSDKPaymentInstrumentsSynchronizer>>([original(synchronizer) retain]);
  [before release];
}

- (id<HLVSDKPaymentInstrumentManager>)paymentInstrumentManager {
  return [[_core->manager retain] autorelease];
}

- (void)setPaymentInstrumentManager:(id<HLVSDKPaymentInstrumentManager>)manager {
  _core->kit->setPaymentInstrumentManager(adapted<InstrumentManager>(manager));
  [self takeManager];
}

- (id<HLVSDKPaymentInstrumentsSynchronizer>)paymentInstrumentsSynchronizer {
  return [[_core->synchronizer retain] autorelease];
}

- (void)setPaymentInstrumentsSynchronizer:(id<HLVSDKPaymentInstrumentsSynchronizer>)synchronizer {
  _core->kit->setPaymentInstrumentsSynchronizer(adapted<InstrumentsSynchronizer>(synchronizer));
  [self takeSynchronizer];
}

- (HLVSDKConfiguration*)configuration {
  return original(_core->kit->configuration());
}

- (void)setConfiguration:(HLVSDKConfiguration*)configuration {
  _core->kit->setConfiguration(adapted<Configuration>(configuration));
}

- (HLVSDKPaylevenKitConfiguration*)kitConfiguration {
  return original(_core->kit->kitConfiguration());
}

- (void)setKitConfiguration:(HLVSDKPaylevenKitConfiguration*)kitConfiguration {
  _core->kit->setKitConfiguration(adapted<KitConfiguration>(kitConfiguration));
}

- (HLVSDKGuest*)currentGuest {
  return original(_core->kit->currentGuest());
}

- (void)setCurrentGuest:(HLVSDKGuest*)currentGuest {
  _core->kit->setCurrentGuest(adapted<Guest>(currentGuest));
}

- (void)start {
  _core->kit->start();
}

- (void)setUpPaymentManager {
  _core->kit->setUpPaymentManager();
  [self takeManager];
}

- (void)setUpPaymentInstrumentsSynchronizer {
  _core->kit->setUpPaymentInstrumentsSynchronizer();
  [self takeSynchronizer];
}

- (void)synchronizePaymentInstruments {
  _core->kit->synchronizePaymentInstruments();
}

- (void)handleUIApplicationWillEnterForegroundNotification:(NSNotification*)notification {
  _core->kit->handleUIApplicationWillEnterForegroundNotification(fromNSNotification(notification));
}

- (void)handleAuthorizationDidChangeNotification:(NSNotification*)notification {
  _core->kit->handleAuthorizationDidChangeNotification(fromNSNotification(notification));
}

- (void)handleReachabilityChangedNotification:(NSNotification*)notification {
  _core->kit->handleReachabilityChangedNotification(fromNSNotification(notification));
}

+ (void)resetSharedInstance {
  hlv::HLVSDKPayleven::resetSharedInstance();
  replaceSharedObject(nil);
}

+ (void)setSharedInstance:(HLVSDKPayleven*)instance {
  hlv::HLVSDKPayleven::setSharedInstance(instance ? instance->_core->kit : nullptr);
  replaceSharedObject(instance);
}

@end
