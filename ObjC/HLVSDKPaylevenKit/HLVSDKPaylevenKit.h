// Everything an app needs to embed the kit: import this one.
#import <HLVSDKPaylevenKit/HLVSDKAddPaylevenCreditCardRequestInfo.h>
#import <HLVSDKPaylevenKit/HLVSDKMutablePaylevenKitConfiguration.h>
#import <HLVSDKPaylevenKit/HLVSDKPLVPaymentInstrument.h>
#import <HLVSDKPaylevenKit/HLVSDKPayleven.h>
#import <HLVSDKPaylevenKit/HLVSDKPaylevenKitConfiguration.h>
#import <HLVSDKPaylevenKit/HLVSDKPaylevenKitMarks.h>
#import <HLVSDKPaylevenKit/HLVSDKPaylevenKitVersion.h>
#import <HLVSDKPaylevenKit/HLVSDKPaylevenPaymentInstrumentFinder.h>
#import <HLVSDKPaylevenKit/HLVSDKPaylevenPaymentInstrumentManager.h>
#import <HLVSDKPaylevenKit/HLVSDKPaylevenPaymentInstrumentsSynchronizer.h>
#import <HLVSDKPaylevenKit/HLVSDKPaymentManager.h>
#import <HLVSDKPaylevenKit/HLVSDKQueue.h>
#import <HLVSDKPaylevenKit/HalvoAuthenticationDeclarations.h>
#import <HLVSDKPaylevenKit/HalvoErrorsDeclarations.h>
