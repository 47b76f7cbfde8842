// What stands in the head of every answer. Private to the services.
//
// Threading: pure; any.
#pragma once

#include <string>
#include <utility>

namespace hlv::services {

inline constexpr const char* requestIDHeader = "X-Request-Id";

/// For browsers: nothing is kept, guessed, framed, or fetched from elsewhere.
inline constexpr std::pair<const char*, const char*> safetyHeaders[] = {
    {"Cache-Control", "no-store"},
    {"Content-Security-Policy",
     "default-src 'self'; img-src 'self' data:; frame-ancestors 'none'; base-uri 'none'"},
    {"Referrer-Policy", "no-referrer"},
    {"X-Content-Type-Options", "nosniff"},
};

/// The answer's own number: letters only, so that none looks like a card number.
std::string makeRequestID();

}  // namespace hlv::services
