// A client that says whatever a test wants, and a server that answers it.
#pragma once

#include <atomic>
#include <mutex>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>
#include <vector>

namespace hlv::testing {

using Json = nlohmann::ordered_json;

struct Heard {
  /// 0 where no answer came.
  int status = 0;
  std::string head;
  std::string text;
  Json body() const { return text.empty() ? Json() : Json::parse(text); }
  /// Of the one shape that errors have, or empty.
  std::string code() const;
};

/// Sends bytes to the service at `url`, and returns what it says until it ends. With `isAll` the
/// service is told that no more will come.
Heard say(const std::string& url, const std::string& bytes, bool isAll = false);
/// The same for a request in JSON; `headers` end in a line break each.
Heard ask(const std::string& url, const std::string& request, const std::string& body = {},
          const std::string& headers = {});

/// One request whose answer goes on.
class Listening {
 public:
  Listening(const std::string& url, const std::string& bytes);
  ~Listening();
  Listening(const Listening&) = delete;
  Listening& operator=(const Listening&) = delete;

  /// What comes next, up to and with `words`; all of it when they do not come.
  std::string until(const std::string& words);
  std::string untilItEnds() { return until({}); }

 private:
  const int descriptor_;
  std::string heard_;
};

/// Listens on a port of its own, takes whatever comes, and answers every request with the same
/// bytes.
class CannedServer {
 public:
  /// With `holds`, connections stay open until this object goes.
  explicit CannedServer(std::string answer, bool holds = false);
  ~CannedServer();
  CannedServer(const CannedServer&) = delete;
  CannedServer& operator=(const CannedServer&) = delete;

  std::string url() const;

 private:
  void serve();

  const std::string answer_;
  const bool holds_;
  int listening_;
  int port_ = 0;
  std::vector<int> held_;
  std::thread thread_;
};

}  // namespace hlv::testing
