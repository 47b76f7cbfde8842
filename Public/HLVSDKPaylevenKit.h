// Everything an app needs to embed the kit: include this one.
#pragma once

#include "Host/Host.h"
#include "Platform/Default/DefaultPlatform.h"
#include "Public/HLVSDKPayleven.h"
#include "Public/HLVSDKPaylevenKitConfiguration.h"
#include "Public/HLVSDKPaylevenKitVersion.h"
#include "Public/HLVSDKPaymentManager.h"
#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentManager.h"
#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentsSynchronizer.h"
