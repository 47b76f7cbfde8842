// Small utilities that do not mind a null.
//
// Threading: none of their own; the caller owns what is changed.
#pragma once

#include <memory>
#include <utility>

#include "Values/Error.h"
#include "Values/Export.h"
#include "Values/List.h"
#include "Values/Value.h"

namespace hlv {

/// Written out here and not asked of the installed host: each is one sentence, and a host has
/// nothing to choose in it.
class HLV_EXPORT HLVUtilities {
 public:
  /// `+error:setError:`. Stores `error` when there is somewhere to store it.
  static void error(ErrorPtr* variable, ErrorPtr error) {
    if (variable) *variable = std::move(error);
  }

  /// `+dictionary:setObject:forKey:`. Leaves the key out when the value, or the key, is missing.
  static void dictionary(Dictionary& dictionary, Value object, const NullableString& key) {
    if (key && !object.isNull()) dictionary.insert_or_assign(*key, std::move(object));
  }

  /// `+array:addObject:`. Appends.
  template <class T>
  static void array(List<T>& array, std::shared_ptr<T> object) {
    array.push_back(std::move(object));
  }
};

}  // namespace hlv
