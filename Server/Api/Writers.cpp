#include "Server/Api/Writers.h"

#include <boost/asio/post.hpp>
#include <boost/asio/thread_pool.hpp>
#include <utility>

namespace hlv::server {

struct Writers::Pool {
  explicit Pool(unsigned count) : threads(count) {}
  boost::asio::thread_pool threads;
};

Writers::Writers(unsigned count) : pool_(std::make_unique<Pool>(count)) {}

Writers::~Writers() { finish(); }

void Writers::post(std::function<void()> task) {
  boost::asio::post(pool_->threads, std::move(task));
}

void Writers::finish() { pool_->threads.join(); }

}  // namespace hlv::server
