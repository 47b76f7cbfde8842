// What a person typed, on its way into the core.
//
// Threading: one thread at a time.
#pragma once

#import <Foundation/Foundation.h>

#include <memory>

#include "ObjC/Binding/Strings.h"
#include "Values/Secret.h"

namespace hlv::host_classes {

/// A copy of a string that is wiped when it was used: it may be a card number or a security code.
class TypedText {
 public:
  explicit TypedText(NSString* string)
      : characters_(std::make_shared<Typed>(string), &Typed::text) {}
  const NullableString& text() const { return characters_.text(); }

 private:
  struct Typed {
    explicit Typed(NSString* typed) : string(typed) {}
    NullableString text() const { return hlv::objc::fromNSString(string); }
    NSString* const string;
  };

  const Secret characters_;
};

}  // namespace hlv::host_classes
