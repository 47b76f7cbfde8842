#include "Sandbox/Logging/LogLine.h"

#include <string_view>

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

}  // namespace

std::string renderedLine(const std::string& format,
                         const std::vector<HLVSDKLogArgument>& arguments) {
  constexpr std::string_view placeholder = "%@";
  std::string line;
  std::size_t at = 0;
  std::size_t used = 0;
  for (auto next = format.find(placeholder); next != std::string::npos;
       next = format.find(placeholder, at)) {
    line.append(format, at, next - at);
    line += used < arguments.size() ? rendered(arguments[used]) : "(null)";
    ++used;
    at = next + placeholder.size();
  }
  line.append(format, at);
  return maskedText(line);
}

std::string lineWithSite(const std::string& line, const char* path, int number,
                         const char* function) {
  return line + " [" + function + " " + path + ":" + std::to_string(number) + "]";
}

std::string levelName(int level) {
  switch (level) {
    case 1:
      return "error";
    case 2:
      return "warning";
    case 3:
      return "info";
    default:
      return "debug";
  }
}

}  // namespace hlv::sandbox
