// The keys of a billing address on its way to the backend. Private to the sandbox and the server.
#pragma once

namespace hlv::sandbox::addressKeys {

inline constexpr const char* street = "street";
inline constexpr const char* city = "city";
inline constexpr const char* countryCode = "country_code";
inline constexpr const char* zip = "zip";
inline constexpr const char* businessName = "business_name";

}  // namespace hlv::sandbox::addressKeys
