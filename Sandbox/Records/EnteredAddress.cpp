#include "Sandbox/Records/EnteredAddress.h"

#include <utility>

namespace hlv::sandbox {

std::shared_ptr<EnteredAddress> EnteredAddress::make(AddressFields fields) {
  return std::shared_ptr<EnteredAddress>(new EnteredAddress(std::move(fields)));
}

}  // namespace hlv::sandbox
