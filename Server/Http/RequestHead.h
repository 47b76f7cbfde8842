// What a request's head says, and whether it is taken. Private to the listener.
//
// Threading: pure functions; any.
#pragma once

#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/string_body.hpp>

#include "Server/Http/HttpMessages.h"
#include "Server/Http/ListenOptions.h"
#include "Server/Http/WipingAllocator.h"

namespace hlv::sandbox::server {

using RequestParser =
    boost::beast::http::request_parser<boost::beast::http::string_body, WipingAllocator<char>>;
using RequestHead = RequestParser::value_type::header_type;

/// Sets what can be read of any head, taken or not.
void describe(const RequestHead& head, HttpRequest& request);
/// Throws `HttpError` for a head that is not taken; sets all of `request` but for the body.
void readHead(const RequestHead& head, const ListenOptions& options, HttpRequest& request);

}  // namespace hlv::sandbox::server
