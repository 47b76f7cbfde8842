// A card number or security code while the kit looks at it.
#pragma once

#include <memory>

#include "Values/NullableString.h"
#include "Values/Send.h"

namespace hlv {

/// Asks a record for a text and overwrites it when done. The text is built in place, and nothing
/// copies or moves it: a moved string leaves its characters behind.
///
/// Threading: one thread at a time.
class Secret {
 public:
  /// A null record has no text.
  template <class Record>
  Secret(const std::shared_ptr<Record>& record, NullableString (Record::*field)() const)
      : text_(send(record, field)) {}
  Secret(const Secret&) = delete;
  Secret& operator=(const Secret&) = delete;

  ~Secret();

  const NullableString& text() const { return text_; }

 private:
  NullableString text_;
};

}  // namespace hlv
