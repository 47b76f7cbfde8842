#import "ObjC/Sandbox/HLVSandbox.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "ObjC/Binding/Strings.h"
#include "ObjC/Host/Install.h"
#include "ObjC/HostClasses/Configuration.h"
#include "ObjC/HostClasses/PlayedHost.h"
#include "ObjC/HostClasses/Records.h"
#include "ObjC/Sandbox/Failure.h"
#include "Sandbox/Cards/EnteredCard.h"
#include "Sandbox/Cards/TestCards.h"
#include "Sandbox/Host/DeviceHost.h"
#include "Sandbox/Records/EnteredAddress.h"
#include "Sandbox/Sandbox.h"

using hlv::host_classes::asObject;
using hlv::host_classes::PlayedHost;
using hlv::objc::fromNSString;
using hlv::objc::toNSString;
using hlv::sandbox::EnteredAddress;
using hlv::sandbox::EnteredCard;
using hlv::sandbox::Sandbox;

struct HLVSandboxCore {
  std::shared_ptr<Sandbox> sandbox;
  std::shared_ptr<PlayedHost> played;
};

namespace {

std::string textOf(NSString* string) { return fromNSString(string).value_or(""); }

const hlv::sandbox::TestCard* testCard(NSString* name) {
  return hlv::sandbox::findTestCard(textOf(name));
}

/// Runs `work` and returns the sentence of the failure which ended it; nil when all went well.
NSString* problemOf(const std::function<void()>& work) {
  const auto problem = hlv::sandbox::objc::problemOf(work);
  return problem.empty() ? nil : toNSString(problem);
}

std::string lineOf(const std::string& brand, const std::string& lastFourDigits,
                   const std::string& useCase, const std::optional<std::string>& identifier) {
  return brand + " .. " + lastFourDigits + ", " + useCase + ", " +
         identifier.value_or("no identifier");
}

std::string lineOf(const hlv::sandbox::BackendCard& card) {
  return lineOf(card.brand, card.lastFourDigits, card.useCase, card.externalIdentifier);
}

std::string lineOf(const hlv::sandbox::ProviderInstrument& instrument) {
  const auto& pan = instrument.maskedPan;
  const auto line =
      lineOf(instrument.brand, pan.substr(pan.size() - std::min<std::size_t>(pan.size(), 4)),
             instrument.useCase, instrument.identifier);
  return instrument.state == 0 ? line : line + ", cannot be used";
}

/// A line for each entry of one side; nil when the store cannot be read.
template <class Entry>
NSArray<NSString*>* linesOf(const HLVSandboxCore& core,
                            std::vector<Entry> (Sandbox::*side)() const) {
  NSMutableArray* lines = nil;
  problemOf([&] {
    const auto entries = (*core.sandbox.*side)();
    lines = [NSMutableArray arrayWithCapacity:entries.size()];
    for (const auto& entry : entries) [lines addObject:toNSString(lineOf(entry))];
  });
  return lines;
}

}  // namespace

@implementation HLVSandbox

+ (instancetype)openStoreAtPath:(NSString*)path problem:(NSString**)problem {
  hlv::objc::install();
  std::string sentence = "The host's constants are other texts than the sandbox's own.";
  if (hlv::objc::frameworkConstants() == *hlv::sandbox::sandboxConstants()) {
    hlv::sandbox::SandboxOptions options;
    options.storePath = textOf(path);
    const auto opened = Sandbox::open(options);
    if (opened) return [[[self alloc] initWithSandbox:*opened] autorelease];
    sentence = opened.problem();
  }
  if (problem) *problem = toNSString(sentence);
  return nil;
}

- (instancetype)init {
  [self release];
  return nil;
}

- (instancetype)initWithSandbox:(const std::shared_ptr<Sandbox>&)sandbox {
  if ((self = [super init])) {
    _core = new HLVSandboxCore{sandbox, std::make_shared<PlayedHost>(sandbox->host())};
    PlayedHost::install(_core->played);
  }
  return self;
}

- (void)dealloc {
  delete _core;
  [super dealloc];
}

- (NSString*)signInWithEmail:(NSString*)email {
  return problemOf([&] { _core->sandbox->signIn(textOf(email)).value(); });
}

- (NSString*)signOut {
  return problemOf([&] { _core->sandbox->signOut(); });
}

- (NSString*)setReachable:(BOOL)reachable {
  return problemOf([&] { _core->sandbox->setReachable(reachable); });
}

- (void)enterForeground {
  _core->sandbox->enterForeground();
}

+ (HLVSDKPaymentInstrument*)paymentInstrumentFromTestCard:(NSString*)name
                                                  useCase:(NSString*)useCase {
  const auto* known = testCard(name);
  if (!known) return nil;
  auto fields = known->fields;
  fields.useCase = textOf(useCase);
  return asObject(EnteredCard::make(std::move(fields)));
}

+ (HLVSDKPaymentBillingAddress*)billingAddressWithStreet:(NSString*)street
                                                    city:(NSString*)city
                                             countryCode:(NSString*)countryCode
                                                     zip:(NSString*)zip
                                            businessName:(NSString*)businessName {
  return asObject(EnteredAddress::make({.street = fromNSString(street),
                                        .city = fromNSString(city),
                                        .countryCode = fromNSString(countryCode),
                                        .zip = fromNSString(zip),
                                        .businessName = fromNSString(businessName)}));
}

+ (id)entryWithKit:(Class)kit configuration:(id)configuration {
  return hlv::host_classes::kitEntry(kit, configuration);
}

+ (HLVSDKConfiguration*)configurationWithEntries:(NSArray*)entries {
  return hlv::host_classes::configurationWithEntries(entries);
}

- (NSString*)addOrphanWithTestCard:(NSString*)name {
  const auto* known = testCard(name);
  if (!known) return @"There is no test card of that name.";
  return problemOf([&] { _core->sandbox->tester()->addOrphanInstrument(known->fields).value(); });
}

- (NSArray<NSString*>*)backendCards {
  return linesOf(*_core, &Sandbox::backendCards);
}

- (NSArray<NSString*>*)providerInstruments {
  return linesOf(*_core, &Sandbox::providerInstruments);
}

- (BOOL)isQuiet {
  return _core->sandbox->isQuiet();
}

@end
