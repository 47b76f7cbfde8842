#include "Sandbox/Logging/Logger.h"

#include <fcntl.h>
#include <spdlog/logger.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/sinks/null_sink.h>
#include <spdlog/sinks/stdout_sinks.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>
#include <system_error>
#include <utility>

#include "Sandbox/Masking/MaskedText.h"

namespace hlv::sandbox {
namespace {

NullableString textOf(const ErrorPtr& error) {
  if (!error) return std::nullopt;
  const auto description = error->localizedDescription();
  return description ? description : error->developerMessage();
}

NullableString textOf(const NullableString& text) { return text; }

std::string rendered(const HLVSDKLogArgument& argument) {
  return std::visit([](const auto& value) { return textOf(value); }, argument).value_or("(null)");
}

std::string lineOf(std::string_view format, const std::vector<HLVSDKLogArgument>& arguments) {
  constexpr std::string_view placeholder = "%@";
  std::string line;
  std::size_t used = 0;
  for (auto next = format.find(placeholder); next != std::string_view::npos;
       next = format.find(placeholder)) {
    line += format.substr(0, next);
    line += used < arguments.size() ? rendered(arguments[used]) : "(null)";
    ++used;
    format.remove_prefix(next + placeholder.size());
  }
  line += format;
  return maskedText(line);
}

/// Of the host's levels, 1 to 4.
spdlog::level::level_enum levelOf(int level) {
  using namespace spdlog::level;
  return level == 1 ? err : level == 2 ? warn : level == 3 ? info : debug;
}

template <class Sink, class... Arguments>
LogSink sinkNamed(const char* name, const Arguments&... arguments) {
  auto sink = std::make_shared<spdlog::logger>(name, std::make_shared<Sink>(arguments...));
  sink->set_level(spdlog::level::debug);
  sink->flush_on(spdlog::level::debug);
  return sink;
}

}  // namespace

Result<LogSink> fileSink(const std::string& path) {
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
  if (file < 0) {
    return Result<LogSink>::failure("The log '" + path + "' cannot be written: " +
                                    std::generic_category().message(errno) + ".");
  }
  ::close(file);
  return sinkNamed<spdlog::sinks::basic_file_sink_mt>("remote", path);
}

LogSink standardErrorSink() { return sinkNamed<spdlog::sinks::stderr_sink_mt>("console"); }

LogSink nullSink() { return sinkNamed<spdlog::sinks::null_sink_mt>("nowhere"); }

Logger::Logger(LogSink sink, std::shared_ptr<Journal> journal)
    : sink_(std::move(sink)), journal_(std::move(journal)) {}

void Logger::logWithLevel(int level, const char* path, int line, const char* function,
                          const char* format, const std::vector<HLVSDKLogArgument>& arguments) {
  const auto text = lineOf(format, arguments);
  const auto name = spdlog::level::to_string_view(levelOf(level));
  if (journal_) journal_->record("kit", "log", text, {name.data(), name.size()});
  sink_->log(levelOf(level), "{} [{} {}:{}]", text, function, path, line);
}

void Logger::write(int level, const std::string& text) {
  sink_->log(levelOf(level), "{}", maskedText(text));
}

}  // namespace hlv::sandbox
