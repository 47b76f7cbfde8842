#include "Sandbox/JSON/JournalRecords.h"

#include "Sandbox/Records/Times.h"

namespace hlv::sandbox {

Json jsonOf(const Event& event) {
  return {{"number", event.number}, {"at", timeTextOfMilliseconds(event.at)},
          {"from", event.from},     {"to", event.to},
          {"what", event.what},     {"result", event.result},
          {"thread", event.thread}};
}

Json jsonOf(const Journal::Operation& operation) {
  return {
      {"number", operation.number}, {"name", operation.name}, {"events", listOf(operation.events)}};
}

}  // namespace hlv::sandbox
