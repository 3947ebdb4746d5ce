#pragma once

#include <vector>

#include "foundation/types.h"

namespace Brindle {

// A number that names have in common only by chance: FNV-1a. Equal names have
// the same one if it covers the bytes up to the first zero byte.
inline uint32 nameTag(const uint8* name, size_t length) {
  uint32 tag = 0x811C9DC5;
  for (size_t i = 0; i < length; ++i) tag = (tag ^ name[i]) * 0x01000193;
  return tag;
}

// Finds elements by name: a crit-bit tree. A search looks at some bits of the
// name, of which there are as many as tell it from the others, and compares one
// name at the end: no choice of names degrades it further than to the bits of
// the longest.
//
// Names are compared up to their first zero byte. They and the elements belong
// to the caller, who keeps them unchanged.
class NameIndex {
 public:
  // The element entered under `name`, or null.
  void* find(const char* name) const;
  // Enters `element` unless there is one of that name. Throws std::bad_alloc
  // with nothing changed.
  void insert(const char* name, void* element);

 private:
  // One element, and one fork: the entry of an element that is not the first
  // carries the fork that tells it from those before.
  struct Entry {
    const char* name;
    void* element;
    size_t bit;          // that is looked at, counted from the first byte's top
    uint32 children[2];  // by that bit
  };
  // Children are entries: their forks, or with LEAF their elements.
  static constexpr uint32 LEAF = 1U << 31;

  const Entry& nearest(const char* name, size_t length) const;
  void linkLast(size_t length);  // whose name has that length

  std::vector<Entry> entries;
  uint32 root = LEAF;
};

}  // namespace Brindle
