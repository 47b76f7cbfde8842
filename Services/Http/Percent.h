// Texts as parts of a URL. Private to the services.
//
// Threading: pure functions; any.
#pragma once

#include <string>
#include <string_view>

#include "Platform/NullableString.h"

namespace hlv::services {

/// Everything but letters, digits and "-._~" as percent signs with two digits.
std::string percentEncoded(std::string_view text);
/// Missing for what is wrongly encoded, is no UTF-8, or holds control characters.
NullableString percentDecoded(std::string_view text);

}  // namespace hlv::services
