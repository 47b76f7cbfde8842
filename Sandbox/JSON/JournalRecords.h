// The timeline, in JSON.
//
// Threading: pure functions; any.
#pragma once

#include "Sandbox/Calls/Journal.h"
#include "Sandbox/JSON/Json.h"
#include "Sandbox/Records/Times.h"

namespace hlv::sandbox {

inline Json jsonOf(const Event& event) {
  return {{"number", event.number}, {"at", timeTextOfMilliseconds(event.at)},
          {"from", event.from},     {"to", event.to},
          {"what", event.what},     {"result", event.result},
          {"thread", event.thread}};
}

inline Json jsonOf(const Journal::Operation& operation) {
  return {
      {"number", operation.number}, {"name", operation.name}, {"events", listOf(operation.events)}};
}

}  // namespace hlv::sandbox
