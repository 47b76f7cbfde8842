// The tester of a sandbox in this process. Private to the sandbox.
#pragma once

#include <memory>

#include "Sandbox/Calls/Journal.h"
#include "Sandbox/Store/Store.h"
#include "Sandbox/Testing/Tester.h"

namespace hlv::sandbox {

/// Threading: any.
std::shared_ptr<Tester> makeTester(std::shared_ptr<Store> store, std::shared_ptr<Journal> journal);

}  // namespace hlv::sandbox
