#include "Services/Http/AnswerHead.h"

#include <random>

namespace hlv::services {

std::string makeRequestID() {
  constexpr int letters = 20;
  std::random_device device;
  std::uniform_int_distribution<int> letter('a', 'z');
  std::string identifier = "req_";
  for (int i = 0; i < letters; ++i) identifier += static_cast<char>(letter(device));
  return identifier;
}

}  // namespace hlv::services
