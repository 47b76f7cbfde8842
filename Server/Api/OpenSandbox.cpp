#include "Server/Api/OpenSandbox.h"

#include <boost/asio/post.hpp>
#include <utility>
#include <vector>

#include "Sandbox/Backend/BackendTables.h"
#include "Server/Api/Idempotency.h"

namespace hlv::sandbox::server {

OpenSandbox::OpenSandbox(std::string id, std::shared_ptr<Store> store,
                         std::shared_ptr<Writers> writers)
    : id_(std::move(id)),
      store_(std::move(store)),
      writers_(std::move(writers)),
      turns_(writers_->get_executor()) {
  readSalt();
}

void OpenSandbox::readSalt() {
  // There from the first time on, and then no write waits for the disk.
  auto salt = store_->write(IdempotentRequest::salt);
  const Lock lock(mutex_);
  salt_ = std::move(salt);
}

std::string OpenSandbox::salt() const {
  const Lock lock(mutex_);
  return salt_;
}

void OpenSandbox::write(Body body, Done done) {
  const Lock lock(mutex_);
  pending_.push_back({std::move(body), std::move(done)});
  if (pending_.size() > 1) return;
  boost::asio::post(turns_, [self = shared_from_this()] { self->writePending(); });
}

void OpenSandbox::runAlone(std::function<void()> work, Done done) {
  boost::asio::post(turns_,
                    [self = shared_from_this(), work = std::move(work), done = std::move(done)] {
                      std::exception_ptr problem;
                      try {
                        work();
                      } catch (...) {
                        problem = std::current_exception();
                      }
                      done(problem);
                    });
}

void OpenSandbox::flushLog() {
  if (!log_.hasNews() || isFlushing_.exchange(true)) return;
  const auto flush = [this] {
    isFlushing_ = false;
    store_->record([this](Database& database) { log_.write(database); });
    log_.forgetWritten();
  };
  // What cannot be recorded fails loudly where the same store has to take an effect.
  runAlone(flush, [](const std::exception_ptr&) {});
}

void OpenSandbox::writePending() {
  std::vector<Write> writes;
  {
    const Lock lock(mutex_);
    writes.swap(pending_);
  }
  std::vector<Store::Part> parts;
  parts.reserve(writes.size() + 1);
  // First, so that a write can read the log.
  if (log_.hasNews()) parts.push_back({[this](Database& database) { log_.write(database); }});
  const auto first = parts.size();
  for (auto& each : writes) parts.push_back({std::move(each.body)});
  store_->writeTogether(parts);
  if (first > 0 && !parts.front().problem) log_.forgetWritten();
  for (std::size_t i = 0; i < writes.size(); ++i) writes[i].done(parts[first + i].problem);
}

int OpenSandbox::openLog() {
  const Lock lock(openingMutex_);
  if (!isLogOpen_) store_->record(RequestLog::open);
  isLogOpen_ = true;
  return ++timesOpened_;
}

void OpenSandbox::closeLog(int time) {
  const Lock lock(openingMutex_);
  if (time != timesOpened_) return;
  try {
    store_->record([this](Database& database) {
      log_.write(database);
      RequestLog::close(database);
    });
    log_.forgetWritten();
    isLogOpen_ = false;
  } catch (const StoreFailure&) {
    // The log says so the next time.
  }
}

void OpenSandbox::restore(const std::string& copy) {
  const auto revision = store_->read(readRevision);
  store_->replaceBy(copy, RequestLog::tables, [&](Database& database) {
    RequestLog::markOpen(database);
    // A client goes by the higher revision, and has seen this one.
    raiseRevisionAbove(database, std::max(revision, readRevision(database)));
  });
  readSalt();
}

}  // namespace hlv::sandbox::server
