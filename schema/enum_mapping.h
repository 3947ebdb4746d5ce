#pragma once

#include <bitset>
#include <initializer_list>
#include <memory>
#include <new>
#include <utility>

#include "schema/named_list.h"

namespace Brindle {

// One row of an enum field's mapping. Names are meant to be unique within a
// mapping, codes need not be.
struct EnumEntry : Named {
  uint8 value = 0;
};

// The entries of an enum field, in the order in which they were added; they do
// not change.
class EnumMapping {
 public:
  EnumMapping() = default;
  using const_iterator = gs::LinkedList<EnumEntry>::Iterator<const EnumEntry>;
  const_iterator begin() const {
    return {empty() ? nullptr : body->entries.list().head};
  }
  const_iterator end() const { return {nullptr}; }
  bool empty() const { return count() == 0; }
  uint64 count() const { return body ? body->entries.list().count : 0; }

  // Duplicates included; throws std::bad_alloc.
  EnumMapping(std::initializer_list<EnumEntry> given) {
    for (const EnumEntry& entry : given) {
      if (!append(entry)) throw std::bad_alloc();
    }
  }
  EnumMapping(const EnumMapping& other)
      : body(other.body ? std::make_unique<Body>(*other.body) : nullptr) {}
  EnumMapping(EnumMapping&& other) noexcept = default;
  EnumMapping& operator=(const EnumMapping& other) {
    return *this = EnumMapping(other);
  }
  EnumMapping& operator=(EnumMapping&& other) noexcept = default;
  ~EnumMapping() = default;

  // Duplicates included. False, with nothing added, when memory runs out.
  bool append(EnumEntry entry) {
    if (!body) body.reset(new (std::nothrow) Body());
    const uint8 code = entry.value;
    if (!body || body->entries.append(std::move(entry)) == nullptr) {
      return false;
    }
    body->entries.extendIndex(WALKED);
    body->used.set(code);
    return true;
  }
  // Takes over the entries whose names are missing here, of several with the
  // same name the first, and answers whether there were any. Throws
  // std::bad_alloc, with nothing changed, only where there were no entries.
  bool merge(EnumMapping&& other) {
    if (other.empty()) return false;
    if (!body) body = std::make_unique<Body>();
    const uint64 before = count();
    const std::unique_ptr<Body> given = std::move(other.body);
    while (auto* first = given->entries.head()) {
      if (body->entries.find(first->value.name) != nullptr) {
        given->entries.remove(first);
      } else {
        body->used.set(first->value.value);
        body->entries.takeFirst(given->entries);
        body->entries.extendIndex(WALKED);
      }
    }
    return count() != before;
  }

  // The first entry of that name, or null.
  const EnumEntry* find(const SafeString& name) const {
    const auto* node = body ? std::as_const(body->entries).find(name) : nullptr;
    return node == nullptr ? nullptr : &node->value;
  }
  // Whether an entry has that code.
  bool hasCode(uint8 code) const { return body && body->used[code]; }

 private:
  // So few are walked: an index would cost each schema that is read, and serve
  // only those that write an enum by its name.
  static constexpr uint64 WALKED = 32;

  struct Body {
    NamedList<EnumEntry> entries;
    std::bitset<256> used;  // codes
  };

  std::unique_ptr<Body> body;  // none for the fields that are no enums
};

}  // namespace Brindle
