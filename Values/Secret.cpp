#include "Values/Secret.h"

namespace hlv {

Secret::~Secret() {
  if (!text_) return;
  text_->resize(text_->capacity());
  // What is written through a volatile reference may not be left out.
  for (char& character : *text_) static_cast<volatile char&>(character) = 0;
}

}  // namespace hlv
