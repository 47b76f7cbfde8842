#include "Services/Http/Connection.h"

#include <algorithm>
#include <cstring>

namespace hlv::services {
namespace {

constexpr std::size_t headBytes = 32UL * 1024;
constexpr std::chrono::milliseconds farewell{1'000};

}  // namespace

Connection::Connection(int descriptor, const ServiceLimits& limits)
    : socket_(descriptor),
      transferTime_(limits.transferTime),
      readDeadline_(Socket::Clock::now() + limits.transferTime),
      readable_(headBytes + limits.bodyBytes) {}

Connection::~Connection() { ::explicit_bzero(arrived_.data(), arrived_.size()); }

ssize_t Connection::read(char* bytes, std::size_t size) {
  if (taken_ == held_) {
    const auto transfer =
        socket_.read(arrived_.data(), std::min(arrived_.size(), readable_), readDeadline_);
    if (transfer.outcome != Socket::Outcome::done) return -1;
    readable_ -= transfer.bytes;
    taken_ = 0;
    held_ = transfer.bytes;
  }
  const auto count = std::min(size, held_ - taken_);
  std::memcpy(bytes, arrived_.data() + taken_, count);
  taken_ += count;
  return static_cast<ssize_t>(count);
}

ssize_t Connection::write(const char* bytes, std::size_t size) {
  const auto now = Socket::Clock::now();
  if (writeDeadline_ == Socket::Clock::time_point()) writeDeadline_ = now + transferTime_;
  const auto transfer = socket_.write(bytes, size, writeDeadline_);
  return transfer.outcome == Socket::Outcome::done ? static_cast<ssize_t>(transfer.bytes) : -1;
}

bool Connection::send(std::string_view bytes) {
  const auto deadline = Socket::Clock::now() + transferTime_;
  while (!bytes.empty()) {
    const auto transfer = socket_.write(bytes.data(), bytes.size(), deadline);
    if (transfer.outcome != Socket::Outcome::done) return false;
    bytes.remove_prefix(transfer.bytes);
  }
  return true;
}

void Connection::get_remote_ip_and_port(std::string& ip, int& port) const {
  ip.clear();
  port = -1;
}

void Connection::get_local_ip_and_port(std::string& ip, int& port) const {
  ip.clear();
  port = -1;
}

void Connection::endPolitely() { socket_.endPolitely(Socket::Clock::now() + farewell); }

}  // namespace hlv::services
