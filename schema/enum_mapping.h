#pragma once

#include <bitset>
#include <initializer_list>
#include <new>

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
  const_iterator begin() const { return entries.list().begin(); }
  const_iterator end() const { return entries.list().end(); }
  bool empty() const { return count() == 0; }
  uint64 count() const { return entries.list().count; }

  // Duplicates included; throws std::bad_alloc.
  EnumMapping(std::initializer_list<EnumEntry> given) {
    for (const EnumEntry& entry : given) {
      if (!append(entry)) throw std::bad_alloc();
    }
  }
  EnumMapping(const EnumMapping&) = default;
  EnumMapping(EnumMapping&& other) noexcept
      : entries(std::move(other.entries)),
        used(std::exchange(other.used, {})) {}
  EnumMapping& operator=(const EnumMapping& other) {
    return *this = EnumMapping(other);
  }
  EnumMapping& operator=(EnumMapping&& other) noexcept {
    entries = std::move(other.entries);
    used = std::exchange(other.used, {});
    return *this;
  }
  ~EnumMapping() = default;

  // Duplicates included. False, with nothing added, when memory runs out.
  bool append(EnumEntry entry) {
    const uint8 code = entry.value;
    if (entries.append(std::move(entry)) == nullptr) return false;
    entries.extendIndex();
    used.set(code);
    return true;
  }
  // Takes over the entries whose names are missing here, of several with the
  // same name the first, and answers whether there were any.
  bool merge(EnumMapping&& other) {
    const uint64 before = count();
    while (auto* first = other.entries.head()) {
      if (entries.find(first->value.name) != nullptr) {
        other.entries.remove(first);
      } else {
        used.set(first->value.value);
        entries.takeFirst(other.entries);
        entries.extendIndex();
      }
    }
    other.used.reset();
    return count() != before;
  }

  // The first entry of that name, or null.
  const EnumEntry* find(const SafeString& name) const {
    const auto* node = entries.find(name);
    return node == nullptr ? nullptr : &node->value;
  }
  // Whether an entry has that code.
  bool hasCode(uint8 code) const { return used[code]; }

 private:
  NamedList<EnumEntry> entries;
  std::bitset<256> used;  // codes
};

}  // namespace Brindle
