#include "Tools/Output/Timeline.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>

namespace hlv::sandbox::tool {
namespace {

/// A reply repeats what its call asked for.
bool answers(const Event& answer, const Event& call) {
  return call.result.empty() && !answer.result.empty() && answer.from == call.to &&
         answer.to == call.from && answer.what == call.what;
}

/// For each event the call or reply that belongs to it.
std::vector<std::optional<std::size_t>> pairs(const std::vector<Event>& events) {
  std::vector<std::optional<std::size_t>> partner(events.size());
  for (std::size_t answer = 0; answer < events.size(); ++answer) {
    for (std::size_t call = 0; call < answer; ++call) {
      if (partner[call] || !answers(events[answer], events[call])) continue;
      partner[call] = answer;
      partner[answer] = call;
      break;
    }
  }
  return partner;
}

/// The lines that join calls and replies, as they stand beside one event after the other.
class CallColumns {
 public:
  std::string begin(std::size_t call) {
    const auto free = std::find(columns_.begin(), columns_.end(), std::nullopt);
    const auto column = static_cast<std::size_t>(free - columns_.begin());
    if (free == columns_.end()) columns_.emplace_back();
    columns_[column] = call;
    return drawn(column, "┌");
  }

  std::string end(std::size_t call) {
    const auto column = static_cast<std::size_t>(std::find(columns_.begin(), columns_.end(), call) -
                                                 columns_.begin());
    auto drawing = drawn(column, "└");
    columns_[column] = std::nullopt;
    while (!columns_.empty() && !columns_.back()) columns_.pop_back();
    return drawing;
  }

  std::string pass() const { return drawn(columns_.size(), "·"); }

 private:
  std::string drawn(std::size_t column, const char* corner) const {
    std::string drawing;
    for (std::size_t i = 0; i < std::max(columns_.size(), column + 1); ++i) {
      drawing += i == column ? corner : columns_[i] ? "│" : " ";
    }
    return drawing;
  }

  std::vector<std::optional<std::size_t>> columns_;
};

std::string textOf(const Event& event) {
  if (event.result.empty()) return event.what;
  return event.to == "log" ? event.result + ": " + event.what : event.what + ": " + event.result;
}

Colour colourOf(const Event& event) {
  if (event.to == "assert" || event.result.starts_with("error")) return Colour::red;
  return event.to == "log" ? Colour::dim : Colour::plain;
}

}  // namespace

Table timelineTable(const std::vector<Event>& events) {
  const auto partner = pairs(events);
  CallColumns columns;
  Table table;
  for (std::size_t i = 0; i < events.size(); ++i) {
    const auto& event = events[i];
    const auto column = !partner[i]       ? columns.pass()
                        : *partner[i] > i ? columns.begin(i)
                                          : columns.end(*partner[i]);
    const auto colour = colourOf(event);
    table.add({{column, Colour::dim},
               {event.from + " → " + event.to, colour},
               {event.thread, Colour::dim},
               {textOf(event), colour}});
  }
  return table;
}

}  // namespace hlv::sandbox::tool
