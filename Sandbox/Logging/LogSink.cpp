#include "Sandbox/Logging/LogSink.h"

#include <fcntl.h>
#include <spdlog/logger.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/sinks/null_sink.h>
#include <spdlog/sinks/stdout_sinks.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace hlv::sandbox {
namespace {

spdlog::level::level_enum levelOf(int level) {
  using namespace spdlog::level;
  return level == 1 ? err : level == 2 ? warn : level == 3 ? info : debug;
}

}  // namespace

Result<LogSink> LogSink::toFile(const std::string& path) {
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
  if (file < 0) {
    return Result<LogSink>::failure("The log '" + path + "' cannot be written: " +
                                    std::generic_category().message(errno) + ".");
  }
  ::close(file);
  return LogSink(std::make_shared<spdlog::logger>(
      "remote", std::make_shared<spdlog::sinks::basic_file_sink_mt>(path)));
}

LogSink LogSink::toStandardError() {
  return LogSink(std::make_shared<spdlog::logger>(
      "console", std::make_shared<spdlog::sinks::stderr_sink_mt>()));
}

LogSink LogSink::toNowhere() {
  return LogSink(
      std::make_shared<spdlog::logger>("nowhere", std::make_shared<spdlog::sinks::null_sink_mt>()));
}

LogSink::LogSink(std::shared_ptr<spdlog::logger> logger) : logger_(std::move(logger)) {
  logger_->set_level(spdlog::level::debug);
  logger_->flush_on(spdlog::level::debug);
}

std::string LogSink::levelName(int level) {
  const auto name = spdlog::level::to_string_view(levelOf(level));
  return {name.data(), name.size()};
}

void LogSink::write(int level, const std::string& line) const {
  logger_->log(levelOf(level), "{}", line);
}

}  // namespace hlv::sandbox
