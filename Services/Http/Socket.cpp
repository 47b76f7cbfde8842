#include "Services/Http/Socket.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace hlv::services {
namespace {

bool isTemporary(int problem) {
  return problem == EAGAIN || problem == EWOULDBLOCK || problem == EINTR;
}

}  // namespace

Socket::~Socket() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

Socket::Outcome Socket::await(short events, Clock::time_point deadline) const {
  for (;;) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    if (left <= 0) return Outcome::timedOut;
    pollfd looked{descriptor_, events, 0};
    const int ready = ::poll(&looked, 1, static_cast<int>(left));
    if (ready > 0) return Outcome::done;
    if (ready < 0 && errno != EINTR) return Outcome::failed;
  }
}

Socket::Outcome Socket::awaitWritable(Clock::time_point deadline) const {
  return await(POLLOUT, deadline);
}

Socket::Transfer Socket::read(char* bytes, std::size_t size, Clock::time_point deadline) {
  for (;;) {
    if (const auto outcome = await(POLLIN, deadline); outcome != Outcome::done) return {outcome};
    const auto count = ::recv(descriptor_, bytes, size, MSG_DONTWAIT);
    if (count > 0) return {Outcome::done, static_cast<std::size_t>(count)};
    if (count == 0) return {Outcome::ended};
    if (!isTemporary(errno)) return {Outcome::failed};
  }
}

Socket::Transfer Socket::write(const char* bytes, std::size_t size, Clock::time_point deadline) {
  for (;;) {
    if (const auto outcome = await(POLLOUT, deadline); outcome != Outcome::done) return {outcome};
    const auto count = ::send(descriptor_, bytes, size, MSG_DONTWAIT | MSG_NOSIGNAL);
    if (count >= 0) return {Outcome::done, static_cast<std::size_t>(count)};
    if (!isTemporary(errno)) return {Outcome::failed};
  }
}

void Socket::endPolitely(Clock::time_point deadline) {
  constexpr std::size_t mostIgnored = 1U << 20;
  if (::shutdown(descriptor_, SHUT_WR) != 0) return;
  std::array<char, 4096> ignored{};
  for (std::size_t total = 0; total < mostIgnored;) {
    const auto transfer = read(ignored.data(), ignored.size(), deadline);
    if (transfer.outcome != Outcome::done) return;
    total += transfer.bytes;
  }
}

void Socket::endRudely() {
  const linger atOnce{1, 0};
  ::setsockopt(descriptor_, SOL_SOCKET, SO_LINGER, &atOnce, sizeof(atOnce));
}

bool Socket::hasEnded() const {
  pollfd looked{descriptor_, POLLRDHUP, 0};
  return ::poll(&looked, 1, 0) != 0;
}

}  // namespace hlv::services
