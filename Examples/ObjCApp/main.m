// An Objective-C app that embeds the kit. It runs through the life of a guest's cards on a fresh
// store, and ends well only if the backend and the payment provider agree about them.
#import <HLVSDKPaylevenKit/HLVSDKPaylevenKit.h>

#include <stdio.h>

#import "ObjC/Sandbox/HLVSandbox.h"

/// What an operation calls when it has come to its end, on any thread.
typedef void (^Report)(NSError* error);

/// Runs the main run loop until `isDone` says so. NO when that takes longer than anybody waits.
static BOOL runUntil(BOOL (^isDone)(void)) {
  NSDate* end = [NSDate dateWithTimeIntervalSinceNow:30];
  while (!isDone()) {
    if ([end timeIntervalSinceNow] < 0) return NO;
    @autoreleasepool {
      // The loop may do what was posted and then wait for more, so it is asked to return soon.
      NSDate* soon = [NSDate dateWithTimeIntervalSinceNow:0.02];
      [[NSRunLoop currentRunLoop] runMode:NSDefaultRunLoopMode beforeDate:soon];
    }
  }
  return YES;
}

/// Says what went wrong, if anything did.
static BOOL isFine(NSString* problem) {
  if (problem) fprintf(stderr, "%s\n", [problem UTF8String]);
  return problem == nil;
}

/// Begins one operation and waits for its report.
static BOOL succeeds(NSString* what, void (^begin)(Report report)) {
  printf("%s\n", [what UTF8String]);
  __block BOOL hasCome = NO;
  __block NSError* failure = nil;
  begin(^(NSError* error) {
    failure = [error retain];
    __atomic_store_n(&hasCome, YES, __ATOMIC_RELEASE);
  });
  const BOOL came = runUntil(^BOOL {
    return __atomic_load_n(&hasCome, __ATOMIC_ACQUIRE);
  });
  return isFine(came ? [[failure autorelease] localizedDescription] : @"Nobody answered.");
}

static void printCard(HLVSDKGuest* guest, HLVSDKCreditCard* card) {
  if (!card) return;
  printf("  %s has %s .. %s, %s\n", [[guest email] UTF8String], [[card brand] UTF8String],
         [[card lastFourDigits] UTF8String], [[card useCase] UTF8String]);
}

static BOOL add(HLVSDKPaymentManager* cards, NSString* testCard, NSString* useCase) {
  NSString* what = [NSString stringWithFormat:@"A card is added: %@, %@", testCard, useCase];
  return succeeds(what, ^(Report report) {
    // A phone app makes these two of what the guest types.
    HLVSDKPaymentInstrument* card = [HLVSandbox paymentInstrumentFromTestCard:testCard
                                                                      useCase:useCase];
    HLVSDKPaymentBillingAddress* address = [HLVSandbox billingAddressWithStreet:@"Market Square 2"
                                                                           city:@"Berlin"
                                                                    countryCode:@"DE"
                                                                            zip:@"10178"
                                                                   businessName:nil];
    [cards addPaymentInstrument:card
                 billingAddress:address
                       forGuest:[HLVSDKGuest currentGuest]
                     completion:^(HLVSDKGuest* guest, HLVSDKCreditCard* added, NSError* error) {
                       printCard(guest, added);
                       report(error);
                     }];
  });
}

static BOOL changeAddress(HLVSDKPaymentManager* cards, HLVSDKCreditCard* card) {
  return succeeds(@"The billing address of the first card changes", ^(Report report) {
    HLVSDKPaymentBillingAddress* address = [HLVSandbox billingAddressWithStreet:@"Harbour Road 1"
                                                                           city:@"Hamburg"
                                                                    countryCode:@"DE"
                                                                            zip:@"20457"
                                                                   businessName:nil];
    [cards
        updatePaymentInstrument:[card halvoID]
                 billingAddress:address
                       forGuest:[HLVSDKGuest currentGuest]
                     completion:^(HLVSDKGuest* guest, HLVSDKCreditCard* changed, NSError* error) {
                       printCard(guest, changed);
                       report(error);
                     }];
  });
}

static BOOL removeCard(HLVSDKPaymentManager* cards, HLVSDKCreditCard* card) {
  return succeeds(@"The second card goes, on both sides", ^(Report report) {
    [cards deletePaymentInstrumentWithID:[card halvoID]
                                 useCase:[card useCase]
                               fromGuest:[HLVSDKGuest currentGuest]
                              completion:^(HLVSDKGuest* guest, NSError* error) {
                                printCard(guest, [[guest creditCards] lastObject]);
                                report(error);
                              }];
  });
}

/// Sees to it that the kit synchronises the guest who is signed in: the kit itself keeps the one
/// whom it read when it was enabled.
static void followGuest(void) {
  HLVSDKPayleven* kit = [HLVSDKPayleven sharedInstance];
  HLVSDKGuest* guest = [HLVSDKGuest currentGuest];
  if (!kit || kit.currentGuest == guest) return;
  kit.currentGuest = guest;
  // The synchroniser before may be at work for the guest before, or busy for ever after a failure.
  [kit setUpPaymentInstrumentsSynchronizer];
  // The kit may have seen the notification first.
  [kit synchronizePaymentInstruments];
}

/// A host runs the kits that its configuration lists.
static void enableKit(void) {
  HLVSDKPaylevenKitConfiguration* configuration = [HLVSDKPaylevenKitConfiguration
      configurationWithBlock:^(HLVSDKMutablePaylevenKitConfiguration* record) {
        record.paymentKey = @"a-payment-key";
      }];
  id entry = [HLVSandbox entryWithKit:[HLVSDKPayleven class] configuration:configuration];
  [HLVSDKPayleven enableWithConfiguration:[HLVSandbox configurationWithEntries:@[ entry ]]];
}

/// Whether each card has its instrument, and each instrument its card. Two empty sides prove
/// nothing.
static BOOL sidesAgree(HLVSandbox* sandbox) {
  NSArray* backend = [[sandbox backendCards] sortedArrayUsingSelector:@selector(compare:)];
  NSArray* provider = [[sandbox providerInstruments] sortedArrayUsingSelector:@selector(compare:)];
  return [backend count] > 0 && [backend isEqualToArray:provider];
}

static void printSides(HLVSandbox* sandbox) {
  for (NSString* line in [sandbox backendCards]) printf("  backend:  %s\n", [line UTF8String]);
  for (NSString* line in [sandbox providerInstruments]) {
    printf("  provider: %s\n", [line UTF8String]);
  }
}

static BOOL addOrphanInstrument(HLVSandbox* sandbox) {
  printf("The provider holds an instrument that the backend does not know\n");
  if (!isFine([sandbox addOrphanWithTestCard:@"amex"])) return NO;
  printSides(sandbox);
  return isFine(sidesAgree(sandbox) ? @"The two sides should disagree now." : nil);
}

/// Nobody reports a synchronisation that the kit begins by itself, so the app looks at what it did.
static BOOL waitForAgreement(HLVSandbox* sandbox) {
  printf("The kit synchronises\n");
  const BOOL agree = runUntil(^BOOL {
    return [sandbox isQuiet] && sidesAgree(sandbox);
  });
  printSides(sandbox);
  return isFine(agree ? nil : @"The two sides do not agree.");
}

static BOOL runThroughCards(HLVSandbox* sandbox, HLVSDKPaymentManager* cards) {
  printf("A guest signs in, and the kit is enabled\n");
  if (!isFine([sandbox signInWithEmail:@"guest@example.com"])) return NO;
  enableKit();

  if (!add(cards, @"visa", kHLVSDKCreditCardUseCaseDefault)) return NO;
  if (!add(cards, @"mastercard", kHLVSDKCreditCardUseCaseBusiness)) return NO;
  printSides(sandbox);

  NSArray* added = [[HLVSDKGuest currentGuest] creditCards];
  if ([added count] != 2) return isFine(@"The guest should have two cards now.");
  if (!changeAddress(cards, [added objectAtIndex:0])) return NO;
  if (!removeCard(cards, [added objectAtIndex:1])) return NO;
  if (!addOrphanInstrument(sandbox)) return NO;
  printf("The app returns to the foreground\n");
  [sandbox enterForeground];
  return waitForAgreement(sandbox);
}

/// Without a network this fails, and the synchroniser drops all that follows.
static BOOL failToSynchronize(HLVSandbox* sandbox) {
  printf("A synchronisation fails\n");
  if (!isFine([sandbox setReachable:NO])) return NO;
  [sandbox enterForeground];
  return runUntil(^BOOL {
           return [sandbox isQuiet];
         }) &&
         isFine([sandbox setReachable:YES]);
}

static BOOL changeGuest(HLVSandbox* sandbox, HLVSDKPaymentManager* cards) {
  printf("Another guest signs in, and later once more\n");
  NSString* email = @"another@example.com";
  if (!isFine([sandbox signOut]) || !isFine([sandbox signInWithEmail:email])) return NO;
  if (!add(cards, @"visa", kHLVSDKCreditCardUseCaseDefault)) return NO;
  if (!addOrphanInstrument(sandbox) || !isFine([sandbox signOut])) return NO;
  return isFine([sandbox signInWithEmail:email]) && waitForAgreement(sandbox);
}

int main(int argc, char** argv) {
  if (argc != 2) {
    fprintf(stderr, "usage: %s STORE\n", argv[0]);
    return 2;
  }
  @autoreleasepool {
    NSString* problem = nil;
    HLVSandbox* sandbox = [HLVSandbox openStoreAtPath:[NSString stringWithUTF8String:argv[1]]
                                              problem:&problem];
    if (!isFine(problem)) return 1;
    // For as long as the app runs.
    [[NSNotificationCenter defaultCenter]
        addObserverForName:kHLVSDKDidChangeAuthorizationStatusNotification
                    object:nil
                     queue:nil
                usingBlock:^(NSNotification* notification) {
                  (void)notification;
                  followGuest();
                }];
    HLVSDKPaymentManager* cards = [[[HLVSDKPaymentManager alloc] init] autorelease];
    if (!runThroughCards(sandbox, cards) || !failToSynchronize(sandbox)) return 1;
    if (!changeGuest(sandbox, cards)) return 1;
    printf("Both sides agree.\n");
  }
  return 0;
}
