#include "Client/HttpClient.h"

#include <future>

namespace hlv::client {

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
