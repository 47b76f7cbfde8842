#include "Sandbox/Service/FaultOnTheWay.h"

#include <utility>

namespace hlv::sandbox {
namespace {

thread_local const FaultOnTheWay* faultNow = nullptr;

}  // namespace

FaultOnTheWay::FaultOnTheWay(std::string kind) : kind_(std::move(kind)) { faultNow = this; }

FaultOnTheWay::~FaultOnTheWay() { faultNow = nullptr; }

std::string FaultOnTheWay::current() { return faultNow ? faultNow->kind_ : ""; }

}  // namespace hlv::sandbox
