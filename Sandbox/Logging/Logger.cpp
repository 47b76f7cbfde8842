#include "Sandbox/Logging/Logger.h"

#include <string_view>
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

}  // namespace

Logger::Logger(LogSink sink, std::shared_ptr<Journal> journal)
    : sink_(std::move(sink)), journal_(std::move(journal)) {}

void Logger::logWithLevel(int level, const char* path, int line, const char* function,
                          const char* format, const std::vector<HLVSDKLogArgument>& arguments) {
  const auto text = lineOf(format, arguments);
  if (journal_) journal_->record("kit", "log", text, LogSink::levelName(level));
  sink_.write(level, text + " [" + function + " " + path + ":" + std::to_string(line) + "]");
}

void Logger::write(int level, const std::string& text) { sink_.write(level, maskedText(text)); }

}  // namespace hlv::sandbox
