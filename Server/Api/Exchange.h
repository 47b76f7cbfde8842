// One request to a sandbox, on its way through the resources. Private to the server.
#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Sandbox/Calls/CallHandler.h"
#include "Sandbox/JSON/Json.h"
#include "Server/Api/Registry.h"
#include "Server/Http/HttpError.h"
#include "Server/Http/HttpMessages.h"
#include "Server/Http/Routes.h"
#include "Values/Error.h"

namespace hlv::sandbox::server {

/// What the request log is to know of a request beyond what the listener does.
struct RequestTrace {
  /// Whose request it is; held, so that it is open when the request ends. Null for none.
  std::shared_ptr<OpenSandbox> sandbox;
  std::optional<FaultKind> fault;
  std::vector<Event> events;

  void add(const std::string& from, const std::string& to, const std::string& what,
           const std::string& result = {});
};

/// Valid while the request is handled.
struct Exchange {
  const HttpRequest& request;
  /// How many parts of the path lead to the sandbox.
  std::size_t skipped = 0;
  std::shared_ptr<OpenSandbox> sandbox;
  std::shared_ptr<RequestTrace> trace;
  /// Gives the reply the trace.
  Reply reply;

  /// A part of the path within the sandbox.
  const std::string& part(std::size_t place) const { return request.path[skipped + place]; }
  /// The body as a JSON object.
  Json body() const { return parsedObject(request.body); }
  /// The session of `Authorization: Bearer …`. Throws `HttpError` for another authorization.
  std::optional<std::string> session() const;
  /// A number of the query from `least` to `greatest`. Throws `HttpError` for another value.
  std::int64_t number(const std::string& name, std::int64_t otherwise, std::int64_t least,
                      std::int64_t greatest) const;
};

using ExchangeHandler = std::function<void(const Exchange&)>;

/// Some reply with what `work` makes: of a state of the store, in the next commit, or, for what is
/// the registry's, on a writer's thread. What it throws becomes the error's reply.
class ApiRoutes : public Routes<ExchangeHandler> {
 public:
  using Work = std::function<HttpReply(Database&, const Exchange&)>;
  void read(std::string_view path, Work work);
  void write(const std::string& method, std::string_view path, Work work);
  void perform(const std::string& method, std::string_view path, Registry& registry,
               std::function<HttpReply(const Exchange&)> work);
};

HttpReply jsonReply(int status, const Json& body);
/// Keeps domain and number, from which a client makes the same error again.
HttpReply errorReply(const ErrorPtr& error, const std::string& requestID);

/// What a handler of a call makes: its reply, and in a few words what the events say of it.
struct CallReply {
  HttpReply reply;
  std::string summary;
};
using CallHandling = std::function<CallReply(Database&, std::optional<FaultKind>)>;

/// Serves one call of a service: a GET on this thread, unless a fault may meet it, any other in the
/// next commit. The effect of a POST with an idempotency key happens once, and its reply is kept in
/// the same transaction.
void serveCall(const Exchange& exchange, const CallHandler& service, const Call& call,
               CallHandling handling);

/// Replies with what `work` makes in the next commit.
void replyWriting(const Exchange& exchange, std::function<HttpReply(Database&)> work);
/// Replies to another write: with what `work` makes, or with the problem that there was.
OpenSandbox::Done replyWhenDone(const Exchange& exchange, std::function<HttpReply()> work);
/// Of the exception that is being handled; whatever it is, a sandbox that was deleted meanwhile is
/// not there. `sandbox` may be null.
HttpReply failureReply(const std::shared_ptr<OpenSandbox>& sandbox, const std::string& requestID);

}  // namespace hlv::sandbox::server
