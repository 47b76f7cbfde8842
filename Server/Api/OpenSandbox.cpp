#include "Server/Api/OpenSandbox.h"

#include <boost/asio/post.hpp>
#include <utility>
#include <vector>

#include "Sandbox/Backend/BackendTables.h"
#include "Server/Api/Idempotency.h"

namespace hlv::sandbox::server {

OpenSandbox::OpenSandbox(std::string id, std::shared_ptr<Store> store,
                         std::shared_ptr<Writers> writers)
    : id_(std::move(id)), store_(std::move(store)), writers_(std::move(writers)) {
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

void OpenSandbox::write(Body body, Done done) { submit({std::move(body), {}, std::move(done)}); }

void OpenSandbox::runAlone(std::function<void()> work, Done done) {
  submit({{}, std::move(work), std::move(done)});
}

void OpenSandbox::flushLog() {
  if (!log_.hasNews() || isFlushing_.exchange(true)) return;
  const auto flush = [this] {
    isFlushing_ = false;
    store_->record([this](Database& database) { log_.write(database); });
    log_.forgetWritten();
  };
  // What cannot be recorded fails loudly where the same store has to take an effect.
  submit({{}, flush, [](const std::exception_ptr&) {}});
}

void OpenSandbox::submit(Task task) {
  {
    const Lock lock(mutex_);
    tasks_.push_back(std::move(task));
    if (std::exchange(isDraining_, true)) return;
  }
  boost::asio::post(*writers_, [self = shared_from_this()] { self->drain(); });
}

void OpenSandbox::drain() {
  std::deque<Task> tasks;
  {
    const Lock lock(mutex_);
    do {
      tasks.push_back(std::move(tasks_.front()));
      tasks_.pop_front();
    } while (!tasks_.empty() && !tasks_.front().alone && !tasks.back().alone);
  }
  if (tasks.front().alone) {
    performAlone(tasks.front());
  } else {
    performTogether(tasks);
  }
  tasks.clear();
  {
    const Lock lock(mutex_);
    isDraining_ = !tasks_.empty();
    if (!isDraining_) return;
  }
  // After other sandboxes' turns.
  boost::asio::post(*writers_, [self = shared_from_this()] { self->drain(); });
}

void OpenSandbox::performAlone(const Task& task) {
  std::exception_ptr problem;
  try {
    task.alone();
  } catch (...) {
    problem = std::current_exception();
  }
  task.done(problem);
}

void OpenSandbox::performTogether(std::deque<Task>& tasks) {
  std::vector<Store::Part> parts;
  parts.reserve(tasks.size() + 1);
  // First, so that a task can read the log.
  if (log_.hasNews()) parts.push_back({[this](Database& database) { log_.write(database); }});
  const auto first = parts.size();
  for (auto& task : tasks) parts.push_back({std::move(task.body)});
  store_->writeTogether(parts);
  if (first > 0 && !parts.front().problem) log_.forgetWritten();
  for (std::size_t i = 0; i < tasks.size(); ++i) tasks[i].done(parts[first + i].problem);
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
