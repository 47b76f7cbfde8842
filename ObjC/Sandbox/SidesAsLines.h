// The two sides of a guest, a line for each card and instrument.
//
// Threading: pure functions; any.
#pragma once

#import <Foundation/Foundation.h>

#include <vector>

#include "Sandbox/Records/BackendCard.h"
#include "Sandbox/Records/ProviderInstrument.h"

namespace hlv::sandbox::objc {

/// A card and the instrument that stands for it read the same. What they return lives as long as
/// its pool.
NSArray<NSString*>* linesOf(const std::vector<BackendCard>& cards);
NSArray<NSString*>* linesOf(const std::vector<ProviderInstrument>& instruments);

}  // namespace hlv::sandbox::objc
