#pragma once

#include "foundation/linked_list.h"
#include "foundation/safe_string.h"

namespace Brindle {

// What fields, enum entries and record entries have in common. A copy keeps the
// name or throws std::bad_alloc: it is never left without.
struct Named {
  SafeString name;

  Named() = default;
  // NOLINTBEGIN(google-explicit-constructor): {"name", ...} makes an element
  Named(SafeString text) : name(std::move(text)) {}
  Named(const char* text) : name(text) {}
  // NOLINTEND(google-explicit-constructor)
  Named(const Named& other) : name(cloneOf(other.name)) {}
  Named(Named&&) noexcept = default;
  Named& operator=(Named other) noexcept {
    name = std::move(other.name);
    return *this;
  }
  ~Named() = default;
};

// The node of the first element of that name, or null. Names are compared
// exactly, up to their first zero byte.
template <class List>
auto* findNamed(List& list, const SafeString& name) {
  return list.find([&](const Named& element) { return element.name == name; });
}

}  // namespace Brindle
