// Texts that may hold card data and are done with.
#pragma once

#include <cstring>
#include <string>

namespace hlv {

/// Overwrites `text` and leaves it empty.
inline void wipe(std::string& text) {
  ::explicit_bzero(text.data(), text.capacity());
  text.clear();
}

/// Overwrites a text at the end of a scope.
///
/// Threading: the text's own.
class Wiped {
 public:
  explicit Wiped(std::string& text) : text_(text) {}
  Wiped(const Wiped&) = delete;
  Wiped& operator=(const Wiped&) = delete;
  ~Wiped() { wipe(text_); }

 private:
  std::string& text_;
};

}  // namespace hlv
