#import <HLVSDKPaylevenKit/HLVSDKPayleven.h>
#import <HLVSDKPaylevenKit/HLVSDKPaylevenPaymentInstrumentManager.h>
#import <HLVSDKPaylevenKit/HLVSDKPaylevenPaymentInstrumentsSynchronizer.h>

#include <objc/runtime.h>

#include <memory>
#include <mutex>
#include <utility>

#include "Host/HLVSDKCoreKit/HLVSDKAPIManager.h"
#include "Host/HLVSDKCoreKit/HLVSDKReachability.h"
#include "Host/PaylevenFramework/PLVInAppClient.h"
#include "ObjC/Binding/Crossing.h"
#include "ObjC/Binding/Director.h"
#include "ObjC/Binding/Install.h"
#include "ObjC/Binding/Values.h"
#include "ObjC/Host/Configuration.h"
#include "ObjC/Host/KitProtocols.h"
#include "ObjC/Host/Records.h"
#include "Platform/Send.h"
#include "Public/HLVSDKPayleven.h"

using CoreKit = hlv::HLVSDKPayleven;
using hlv::send;
using hlv::objc::adapted;
using hlv::objc::Configuration;
using hlv::objc::fromNSNotification;
using hlv::objc::Guest;
using hlv::objc::InstrumentManager;
using hlv::objc::InstrumentsSynchronizer;
using hlv::objc::KitConfiguration;
using hlv::objc::original;

namespace {

class KitDirector final : public hlv::objc::Director<CoreKit, HLVSDKPayleven> {
 public:
  using Director::Director;
  using CoreKit::checkedKitConfiguration;
  using CoreKit::sharedInstanceMadeBy;

  void setPaymentInstrumentManager(
      std::shared_ptr<hlv::HLVSDKPaymentInstrumentManager> manager) override {
    const auto kit = object();
    if (!kit) return CoreKit::setPaymentInstrumentManager(std::move(manager));
    [*kit setPaymentInstrumentManager:original(manager)];
  }

  void setPaymentInstrumentsSynchronizer(
      std::shared_ptr<hlv::HLVSDKPaymentInstrumentsSynchronizer> synchronizer) override {
    const auto kit = object();
    if (!kit) return CoreKit::setPaymentInstrumentsSynchronizer(std::move(synchronizer));
    [*kit setPaymentInstrumentsSynchronizer:original(synchronizer)];
  }

  void setUpPaymentManager() override {
    const auto kit = object();
    if (!kit) return CoreKit::setUpPaymentManager();
    [*kit setUpPaymentManager];
  }

  void setUpPaymentInstrumentsSynchronizer() override {
    const auto kit = object();
    if (!kit) return CoreKit::setUpPaymentInstrumentsSynchronizer();
    [*kit setUpPaymentInstrumentsSynchronizer];
  }

  void synchronizePaymentInstruments() override {
    const auto kit = object();
    if (!kit) return CoreKit::synchronizePaymentInstruments();
    [*kit synchronizePaymentInstruments];
  }

 protected:
  void observeNotifications() override {
    observe(hlv::objc::toNSString(hlv::UIApplicationWillEnterForegroundNotification),
            @selector(handleUIApplicationWillEnterForegroundNotification:));
    observe(kHLVSDKDidChangeAuthorizationStatusNotification,
            @selector(handleAuthorizationDidChangeNotification:));
    observe(HLVSDKReachabilityDidChangeReachabilityStateNotification,
            @selector(handleReachabilityChangedNotification:));
  }

  std::shared_ptr<hlv::HLVSDKPaymentInstrumentManager> makePaymentInstrumentManager(
      std::shared_ptr<hlv::HLVSDKAPIManager> apiManager,
      std::shared_ptr<hlv::PLVInAppClient> paylevenClient,
      std::shared_ptr<hlv::HLVSDKReachability> reachability) override {
    return adapted<InstrumentManager>([[[HLVSDKPaylevenPaymentInstrumentManager alloc]
        initWithAPIManager:original(apiManager)
            paylevenClient:original(paylevenClient)
              reachability:original(reachability)] autorelease]);
  }

  std::shared_ptr<hlv::HLVSDKPaymentInstrumentsSynchronizer> makePaymentInstrumentsSynchronizer(
      std::shared_ptr<hlv::HLVSDKAPIManager> apiManager,
      std::shared_ptr<hlv::PLVInAppClient> paylevenClient) override {
    return adapted<InstrumentsSynchronizer>([[[HLVSDKPaylevenPaymentInstrumentsSynchronizer alloc]
        initWithAPIManager:original(apiManager)
            paylevenClient:original(paylevenClient)] autorelease]);
  }

 private:
  void observe(NSString* name, SEL handler) const {
    const auto kit = object();
    // Without a name an observer is told of everything.
    if (!kit || !name) return;
    [[NSNotificationCenter defaultCenter] addObserver:*kit selector:handler name:name object:nil];
  }
};

}  // namespace

struct HLVPaylevenCore {
  std::shared_ptr<KitDirector> kit;
};

@implementation HLVSDKPayleven

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

/// Null for an object without a core: a stand-in of another class, or one that is not initialised.
static std::shared_ptr<KitDirector> coreOf(HLVSDKPayleven* object) {
  Class type = object_getClass(object);
  while (type && type != [HLVSDKPayleven class]) type = class_getSuperclass(type);
  return type && object->_core ? object->_core->kit : nullptr;
}

+ (void)initialize {
  hlv::objc::install();
}

+ (void)enableWithConfiguration:(HLVSDKConfiguration*)configuration {
  const auto kitConfiguration = KitDirector::checkedKitConfiguration(
      adapted<Configuration>(configuration), hlv::objc::kitClass(self));
  if (!kitConfiguration) return;
  [HLVSDKPayleven sharedInstanceWithConfiguration:configuration
                         paylevenKitConfiguration:original(kitConfiguration)];
}

+ (instancetype)sharedInstance {
  const std::lock_guard lock(sharedMutex);
  return [[sharedObject retain] autorelease];
}

+ (instancetype)sharedInstanceWithConfiguration:(HLVSDKConfiguration*)configuration
                       paylevenKitConfiguration:(HLVSDKPaylevenKitConfiguration*)kitConfiguration {
  KitDirector::sharedInstanceMadeBy([&] {
    auto* const made =
        [[[HLVSDKPayleven alloc] initWithConfiguration:configuration
                              paylevenKitConfiguration:kitConfiguration] autorelease];
    replaceSharedObject(made);
    return coreOf(made);
  });
  return [self sharedInstance];
}

- (instancetype)initWithConfiguration:(HLVSDKConfiguration*)configuration
             paylevenKitConfiguration:(HLVSDKPaylevenKitConfiguration*)kitConfiguration {
  if ((self = [super init])) {
    _core = new HLVPaylevenCore{std::make_shared<KitDirector>(self)};
    _core->kit->begin(adapted<Configuration>(configuration),
                      adapted<KitConfiguration>(kitConfiguration));
  }
  return self;
}

- (instancetype)init {
  if ((self = [super init])) _core = new HLVPaylevenCore{std::make_shared<KitDirector>(self)};
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
  return original(send(coreOf(self), &KitDirector::paymentInstrumentManager));
}

- (void)setPaymentInstrumentManager:(id<HLVSDKPaymentInstrumentManager>)manager {
  if (const auto kit = coreOf(self)) {
    kit->CoreKit::setPaymentInstrumentManager(adapted<InstrumentManager>(manager));
  }
}

- (id<HLVSDKPaymentInstrumentsSynchronizer>)paymentInstrumentsSynchronizer {
  return original(send(coreOf(self), &KitDirector::paymentInstrumentsSynchronizer));
}

- (void)setPaymentInstrumentsSynchronizer:(id<HLVSDKPaymentInstrumentsSynchronizer>)synchronizer {
  if (const auto kit = coreOf(self)) {
    kit->CoreKit::setPaymentInstrumentsSynchronizer(adapted<InstrumentsSynchronizer>(synchronizer));
  }
}

- (HLVSDKConfiguration*)configuration {
  return original(send(coreOf(self), &KitDirector::configuration));
}

- (void)setConfiguration:(HLVSDKConfiguration*)configuration {
  send(coreOf(self), &KitDirector::setConfiguration, adapted<Configuration>(configuration));
}

- (HLVSDKPaylevenKitConfiguration*)kitConfiguration {
  return original(send(coreOf(self), &KitDirector::kitConfiguration));
}

- (void)setKitConfiguration:(HLVSDKPaylevenKitConfiguration*)kitConfiguration {
  send(coreOf(self), &KitDirector::setKitConfiguration,
       adapted<KitConfiguration>(kitConfiguration));
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
  if (const auto kit = coreOf(self)) kit->CoreKit::setUpPaymentManager();
}

- (void)setUpPaymentInstrumentsSynchronizer {
  if (const auto kit = coreOf(self)) kit->CoreKit::setUpPaymentInstrumentsSynchronizer();
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
  CoreKit::resetSharedInstance();
  replaceSharedObject(nil);
}

+ (void)setSharedInstance:(HLVSDKPayleven*)instance {
  CoreKit::setSharedInstance(coreOf(instance));
  replaceSharedObject(instance);
}

@end
