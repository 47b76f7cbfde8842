// A connection as the HTTP library sees it. Private to the services.
#pragma once

#include <httplib.h>

#include <array>
#include <string>
#include <string_view>

#include "Services/Http/Socket.h"
#include "Services/ServiceLimits.h"

namespace hlv::services {

/// Has one deadline for all of a request and one for all of its answer, so that a slow stranger
/// holds a thread for no longer, and reads no more than a request may have.
///
/// Threading: one thread at a time.
class Connection final : public httplib::Stream {
 public:
  /// Takes over `descriptor`.
  Connection(int descriptor, const ServiceLimits& limits);
  ~Connection() override;

  bool is_readable() const override { return true; }
  bool is_writable() const override { return true; }
  ssize_t read(char* bytes, std::size_t size) override;
  ssize_t write(const char* bytes, std::size_t size) override;
  void get_remote_ip_and_port(std::string& ip, int& port) const override;
  void get_local_ip_and_port(std::string& ip, int& port) const override;
  socket_t socket() const override { return socket_.descriptor(); }

  /// Sends all of `bytes`, with a deadline of their own. Answers whether they left.
  bool send(std::string_view bytes);
  /// Ends it so that the answer arrives, whatever of the request was not read.
  void endPolitely();
  /// Ends it with a reset.
  void endRudely() { socket_.endRudely(); }
  bool hasEnded() const { return socket_.hasEnded(); }

 private:
  Socket socket_;
  const std::chrono::milliseconds transferTime_;
  const Socket::Clock::time_point readDeadline_;
  Socket::Clock::time_point writeDeadline_;
  std::size_t readable_;
  // The library asks for single bytes.
  std::array<char, 4096> arrived_{};
  std::size_t taken_ = 0;
  std::size_t held_ = 0;
};

}  // namespace hlv::services
