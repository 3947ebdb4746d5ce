#include "schema/name_index.h"

#include <bit>
#include <cstring>

namespace Brindle {

namespace {

// Behind its end a name has zeros.
bool bitOf(const char* name, size_t length, size_t bit) {
  const size_t at = bit / 8;
  return at < length && (static_cast<uint8>(name[at]) << bit % 8 & 0x80) != 0;
}

constexpr size_t NONE = SIZE_MAX;

// The first bit in which two names differ, or NONE.
size_t criticalBit(const char* a, const char* b) {
  size_t at = 0;
  for (; a[at] == b[at]; ++at) {
    if (a[at] == 0) return NONE;
  }
  const auto differing = static_cast<uint8>(a[at] ^ b[at]);
  return 8 * at + static_cast<size_t>(std::countl_zero(differing));
}

}  // namespace

const NameIndex::Entry& NameIndex::nearest(const char* name,
                                           size_t length) const {
  uint32 child = root;
  while ((child & LEAF) == 0) {
    const Entry& fork = entries[child];
    child = fork.children[bitOf(name, length, fork.bit)];
  }
  return entries[child & ~LEAF];
}

void* NameIndex::find(const char* name) const {
  if (entries.empty()) return nullptr;
  const Entry& found = nearest(name, std::strlen(name));
  return std::strcmp(found.name, name) == 0 ? found.element : nullptr;
}

void NameIndex::insert(const char* name, void* element) {
  constexpr size_t FIRST_STEP = 32;
  if (entries.empty()) entries.reserve(FIRST_STEP);
  const size_t length = std::strlen(name);
  size_t bit = 0;
  if (!entries.empty()) {
    bit = criticalBit(nearest(name, length).name, name);
    if (bit == NONE) return;
  }
  entries.push_back({name, element, bit, {}});
  if (entries.size() != 1) linkLast(length);
}

// Forks follow each other in the order of their bits.
void NameIndex::linkLast(size_t length) {
  Entry& added = entries.back();
  uint32* place = &root;
  while ((*place & LEAF) == 0 && entries[*place].bit < added.bit) {
    Entry& fork = entries[*place];
    place = &fork.children[bitOf(added.name, length, fork.bit)];
  }
  const auto index = static_cast<uint32>(entries.size() - 1);
  const bool side = bitOf(added.name, length, added.bit);
  added.children[side] = LEAF | index;
  added.children[!side] = *place;
  *place = index;
}

}  // namespace Brindle
