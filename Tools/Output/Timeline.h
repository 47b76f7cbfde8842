// The timeline of one operation, line by line.
//
// Threading: one thread at a time.
#pragma once

#include <vector>

#include "Sandbox/Calls/Journal.h"
#include "Tools/Output/Table.h"

namespace hlv::sandbox::tool {

/// One row an event. A call and its reply are joined by a line at the left, so that calls that run
/// side by side can be distinguished.
Table timelineTable(const std::vector<Event>& events);

}  // namespace hlv::sandbox::tool
