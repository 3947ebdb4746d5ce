#pragma once

#include <concepts>
#include <memory>
#include <utility>

#include "foundation/safe_string.h"

namespace Brindle {

// The name of a field, enum entry or record entry: a text that never changes
// and that all copies share, so that a record costs no memory for the names it
// has from its schema.
class Name {
 public:
  Name() = default;  // without a buffer: equal to no name
  // Zero bytes included, with one allocation.
  explicit Name(const gs::ConstBuf& bytes);
  // Copy a text, or throw std::bad_alloc: a name never gets lost.
  // NOLINTBEGIN(google-explicit-constructor): texts serve as names
  Name(const SafeString& text);
  Name(const char* text) : Name(SafeString(text)) {}

  operator const SafeString&() const { return shared ? *shared : none(); }
  // NOLINTEND(google-explicit-constructor)
  const SafeString& text() const { return *this; }
  const char* c_str() const { return text().c_str(); }

 private:
  friend class NamePool;
  explicit Name(std::shared_ptr<const SafeString>&& text)
      : shared(std::move(text)) {}

  static const SafeString& none() {
    static const SafeString NONE;
    return NONE;
  }

  std::shared_ptr<const SafeString> shared;
};

// Makes many names with few allocations, which last as long as any of them.
class NamePool {
 public:
  // Memory for so many names is allocated at a time, as far as that is
  // sensible.
  explicit NamePool(size_t names) : nextChunk(names * TYPICAL) {}

  // Zero bytes included. Throws std::bad_alloc.
  Name make(const gs::ConstBuf& bytes);

 private:
  struct Unit;

  static constexpr size_t TYPICAL = sizeof(SafeString) + 16;
  // Below the size from which allocators tidy up all they have.
  static constexpr size_t MOST = 960;

  size_t nextChunk;  // bytes
  std::shared_ptr<Unit[]> chunk;
  Unit* next = nullptr;
  size_t left = 0;  // units, from `next` on
};

// What fields, enum entries and record entries have in common. Names are
// compared exactly, up to their first zero byte.
struct Named {
  Name name;

  Named() = default;
  // NOLINTBEGIN(google-explicit-constructor): {"name", ...} makes an element
  template <std::convertible_to<Name> Text>
  Named(Text&& text) : name(std::forward<Text>(text)) {}
  // NOLINTEND(google-explicit-constructor)
};

}  // namespace Brindle
