// What the runtime of blocks does not do on this system.
#pragma once

namespace hlv::objc {

/// Where the runtime of blocks does not know that of classes, a copied block would not keep the
/// objects that it captures. Whatever calls this brings along the two functions that make it do so.
/// Elsewhere there is nothing to bring.
///
/// Threading: any.
void keepCapturedObjects();

}  // namespace hlv::objc
