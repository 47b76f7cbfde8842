#include "Client/HttpClient.h"

#include <pthread.h>

#include <atomic>
#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <future>
#include <utility>

#include "Client/HttpExchange.h"
#include "Platform/Platform.h"
#include "Sandbox/Errors/SandboxError.h"

namespace hlv::client {

struct HttpLoop::State {
  void begin(const ServiceURL& url, std::chrono::milliseconds timeout, RequestMaker make,
             Completion completion) {
    auto end = [this, completion = std::move(completion)](ClientReply reply) mutable {
      completion(std::move(reply));
      completion = nullptr;
      --unfinished;
      Platform::current()->mainQueue()->async([] {});
    };
    ClientRequest request;
    try {
      request = std::exchange(make, nullptr)();
    } catch (const sandbox::Refusal& refusal) {
      return end({refusal.error, nullptr});
    }
    exchange(context, kept, url, std::move(request), timeout, std::move(end));
  }

  // Destroyed last: sockets and timers need it.
  boost::asio::io_context context{1};
  boost::asio::executor_work_guard<boost::asio::io_context::executor_type> work{
      context.get_executor()};
  KeptConnections kept;
  std::atomic<std::size_t> unfinished{0};
  std::atomic<std::thread::id> thread{};
};

HttpLoop::HttpLoop() : state_(std::make_shared<State>()) {}

HttpLoop::~HttpLoop() {
  state_->context.stop();
  if (!thread_.joinable()) return;
  if (isOwnThread()) {
    thread_.detach();
  } else {
    thread_.join();
  }
}

void HttpLoop::send(const ServiceURL& url, std::chrono::milliseconds timeout, RequestMaker request,
                    Completion completion) {
  std::call_once(started_, [this] {
    thread_ = std::thread([state = state_] {
      ::pthread_setname_np(::pthread_self(), "client");
      state->thread = std::this_thread::get_id();
      state->context.run();
    });
  });
  ++state_->unfinished;
  boost::asio::post(state_->context,
                    [state = state_.get(), url, timeout, request = std::move(request),
                     completion = std::move(completion)]() mutable {
                      state->begin(url, timeout, std::move(request), std::move(completion));
                    });
}

bool HttpLoop::isIdle() const { return state_->unfinished == 0; }

bool HttpLoop::isOwnThread() const { return state_->thread == std::this_thread::get_id(); }

ClientReply HttpClient::send(ClientRequest request) const {
  if (loop_->isOwnThread()) {
    return HttpClient(url_, timeout_, std::make_shared<HttpLoop>()).send(std::move(request));
  }
  const auto reply = std::make_shared<std::promise<ClientReply>>();
  auto coming = reply->get_future();
  const auto shared = std::make_shared<ClientRequest>(std::move(request));
  send([shared] { return std::move(*shared); },
       [reply](ClientReply come) { reply->set_value(std::move(come)); });
  return coming.get();
}

}  // namespace hlv::client
