#include "Sandbox/Service/FaultOnTheWay.h"

#include <utility>

namespace hlv::sandbox {
namespace {

thread_local std::string kindNow;

}  // namespace

FaultOnTheWay::FaultOnTheWay(std::string kind) { kindNow = std::move(kind); }

FaultOnTheWay::~FaultOnTheWay() { kindNow.clear(); }

std::string FaultOnTheWay::current() { return kindNow; }

}  // namespace hlv::sandbox
