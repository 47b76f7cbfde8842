#include "Sandbox/Service/FaultOnTheWay.h"

#include <utility>

namespace hlv::sandbox {
namespace {

thread_local std::string kindNow;

}  // namespace

FaultOnTheWay::FaultOnTheWay(std::string kind) {
  if (isOne(kind)) kindNow = std::move(kind);
}

FaultOnTheWay::~FaultOnTheWay() { kindNow.clear(); }

bool FaultOnTheWay::isOne(const std::string& kind) {
  return kind == "refused" || kind == "reset" || kind == "garbage" || kind == "twice";
}

std::string FaultOnTheWay::current() { return kindNow; }

}  // namespace hlv::sandbox
