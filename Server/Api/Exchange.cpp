#include "Server/Api/Exchange.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <utility>

#include "Sandbox/Calls/Summary.h"
#include "Sandbox/Records/Times.h"
#include "Server/Api/Idempotency.h"
#include "Values/Wiped.h"

namespace hlv::sandbox::server {
namespace {

/// Of those kinds that meet a reply on its way; empty for the others.
TransportFault transportFaultOf(const Fault& fault) {
  using Then = OutgoingReply::Then;
  const auto halves = [](std::size_t count, Then then) {
    return [count, then](OutgoingReply& reply) { reply.cut(reply.bytes.size() * count / 2, then); };
  };
  switch (fault.kind) {
    case FaultKind::refused:
      return halves(0, Then::reset);
    case FaultKind::never:
      return halves(0, Then::hold);
    case FaultKind::reset:
      return halves(1, Then::reset);
    case FaultKind::stalled:
      return halves(1, Then::hold);
    case FaultKind::cut:
      return [end = static_cast<std::size_t>(fault.bytes.value_or(0))](OutgoingReply& reply) {
        reply.cut(end, Then::reset);
      };
    case FaultKind::garbage:
      return [](OutgoingReply& reply) {
        reply.bytes = "This is no reply of a service.\r\n\r\n";
        reply.status = 0;
      };
    case FaultKind::twice:
      return [](OutgoingReply& reply) { reply.bytes += reply.bytes; };
    case FaultKind::slow:
      return [rate = fault.bytesPerSecond.value_or(1)](OutgoingReply& reply) {
        constexpr std::int64_t piecesPerSecond = 20;
        const auto piece = std::max<std::int64_t>(rate / piecesPerSecond, 1);
        reply.piece = static_cast<std::size_t>(piece);
        reply.pause = std::chrono::milliseconds(1'000 * piece / rate);
      };
    default:
      return nullptr;
  }
}

/// What the fault does to a reply, whether it is the first one or a kept one.
void apply(const Fault& fault, HttpReply& reply) {
  reply.delay = std::chrono::milliseconds(fault.delayMilliseconds);
  reply.fault = transportFaultOf(fault);
  if (fault.kind != FaultKind::error) return;
  if (fault.status) reply.status = static_cast<int>(*fault.status);
  reply.headers.insert(reply.headers.end(), fault.headers.begin(), fault.headers.end());
}

/// One call until its reply is there.
struct Serving {
  const CallHandler& service;
  Call call;
  CallHandling handling;
  std::string requestID;
  std::optional<IdempotentRequest> repeatable;
  std::shared_ptr<RequestTrace> trace;

  /// Served once for each state of the store; missing where something disturbs the call.
  std::optional<HttpReply> read(Store& store, const std::string& key) const {
    try {
      auto made = store.readAgain(key, [this](Database& database) {
        return isUndisturbed(database, call) ? std::optional(handling(database, std::nullopt))
                                             : std::nullopt;
      });
      if (!made) return std::nullopt;
      record(std::nullopt, nullptr, made->summary);
      return std::move(made->reply);
    } catch (const Refusal& refusal) {
      record(std::nullopt, refusal.error, "");
      return errorReply(refusal.error, requestID);
    }
  }

  HttpReply serve(Database& database) const {
    if (repeatable) {
      if (auto kept = repeatable->keptReply(database, requestID)) return *std::move(kept);
    }
    const Handling<CallReply, ErrorPtr> making = [this](Database& within,
                                                        std::optional<FaultKind> kind) {
      return std::tuple<CallReply, ErrorPtr>(handling(within, kind), nullptr);
    };
    const auto [results, fault] = service.handle(database, call, making);
    const auto& [made, error] = results;
    auto reply = error ? errorReply(error, requestID) : made.reply;
    record(fault, error, made.summary);
    if (repeatable && (!fault || hasEffect(*fault))) repeatable->keep(database, reply);
    if (fault) apply(*fault, reply);
    return reply;
  }

 private:
  static bool hasEffect(const Fault& fault) {
    return fault.kind != FaultKind::error && fault.kind != FaultKind::refused &&
           fault.kind != FaultKind::never;
  }

  void record(const std::optional<Fault>& fault, const ErrorPtr& error,
              const std::string& success) const {
    const auto what = call.description();
    trace->add("client", service.name(), what);
    if (fault) {
      trace->fault = fault->kind;
      trace->add(service.name(), service.name(), descriptionOf(*fault));
    }
    const bool isSilent =
        fault && (fault->kind == FaultKind::never || fault->kind == FaultKind::refused);
    if (isSilent) return;
    const auto result = error ? summary(error) : success;
    trace->add(service.name(), "client", what, result.empty() ? "done" : result);
  }
};

/// For what replies later.
struct KeptExchange {
  explicit KeptExchange(const Exchange& kept)
      : request(kept.request),
        exchange{request, kept.skipped, kept.sandbox, kept.trace, kept.reply} {}
  ~KeptExchange() { wipe(request.body); }
  KeptExchange(const KeptExchange&) = delete;
  KeptExchange& operator=(const KeptExchange&) = delete;

  HttpRequest request;
  const Exchange exchange;
};

}  // namespace

void RequestTrace::add(const std::string& from, const std::string& to, const std::string& what,
                       const std::string& result) {
  const auto now = millisecondOf(std::chrono::system_clock::now());
  events.push_back(
      {.from = from, .to = to, .what = what, .result = result, .thread = {}, .at = now});
}

std::optional<std::string> Exchange::session() const {
  const auto& authorization = request.authorization;
  if (!authorization) return std::nullopt;
  constexpr std::string_view scheme = "Bearer ";
  if (!authorization->starts_with(scheme)) {
    throw HttpError(401, "not-signed-in", "Only the session of a guest authorises a request.");
  }
  return authorization->substr(scheme.size());
}

std::int64_t Exchange::number(const std::string& name, std::int64_t otherwise, std::int64_t least,
                              std::int64_t greatest) const {
  const auto text = request.queryValue(name);
  if (!text) return otherwise;
  const auto value = numberOf(*text);
  if (!value || *value < least || *value > greatest) {
    throw HttpError(422, "wrong-type", "'" + name + "' is no number of this kind.");
  }
  return *value;
}

HttpReply jsonReply(int status, const Json& body) {
  return {.status = status, .body = body.is_null() ? "" : textOf(body)};
}

void serveCall(const Exchange& exchange, const CallHandler& service, const Call& call,
               CallHandling handling) {
  const auto& request = exchange.request;
  Serving serving{service, call, std::move(handling), request.id, std::nullopt, exchange.trace};
  if (request.method == "POST" && request.idempotencyKey) {
    serving.repeatable = IdempotentRequest(request, service.name(), exchange.sandbox->salt());
  }
  if (request.method == "GET") {
    const auto key = request.target + "\n" + request.authorization.value_or("");
    if (auto reply = serving.read(exchange.sandbox->store(), key)) {
      return exchange.reply(*std::move(reply));
    }
  }
  replyWriting(exchange, [serving = std::move(serving)](Database& database) {
    return serving.serve(database);
  });
}

void ApiRoutes::read(std::string_view path, Work work) {
  add("GET", path, [work = std::move(work)](const Exchange& exchange) {
    auto& store = exchange.sandbox->store();
    exchange.reply(store.read([&](Database& database) { return work(database, exchange); }));
  });
}

void ApiRoutes::write(const std::string& method, std::string_view path, Work work) {
  add(method, path, [work = std::move(work)](const Exchange& exchange) {
    const auto kept = std::make_shared<KeptExchange>(exchange);
    replyWriting(exchange,
                 [kept, work](Database& database) { return work(database, kept->exchange); });
  });
}

void ApiRoutes::perform(const std::string& method, std::string_view path, Registry& registry,
                        std::function<HttpReply(const Exchange&)> work) {
  add(method, path, [&registry, work = std::move(work)](const Exchange& exchange) {
    const auto kept = std::make_shared<KeptExchange>(exchange);
    const auto done = replyWhenDone(exchange, [kept, work] { return work(kept->exchange); });
    registry.post([done] { done(nullptr); });
  });
}

void replyWriting(const Exchange& exchange, std::function<HttpReply(Database&)> work) {
  const auto made = std::make_shared<HttpReply>();
  exchange.sandbox->write(
      [made, work = std::move(work)](Database& database) { *made = work(database); },
      replyWhenDone(exchange, [made] { return std::move(*made); }));
}

OpenSandbox::Done replyWhenDone(const Exchange& exchange, std::function<HttpReply()> work) {
  return [work = std::move(work), id = exchange.request.id, sandbox = exchange.sandbox,
          reply = exchange.reply](const std::exception_ptr& problem) {
    try {
      if (problem) std::rethrow_exception(problem);
      reply(work());
    } catch (...) {
      reply(failureReply(sandbox, id));
    }
  };
}

}  // namespace hlv::sandbox::server
