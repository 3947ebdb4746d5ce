#pragma once

#include <initializer_list>

#include "schema/field_value.h"
#include "schema/named_list.h"

namespace Brindle {

// One record: named values in insertion order, which is the order they are
// written in. Names are compared exactly, up to their first zero byte; several
// entries may carry the same name, and a lookup takes the first.
//
// Copies have entries of their own but share strings, arrays and nested
// records.
class DataMap {
 public:
  struct Entry : Named {
    FieldValue value;
  };
  using List = gs::LinkedList<Entry>;
  using iterator = List::Node*;
  using const_iterator = const List::Node*;

  DataMap() = default;
  // Appends the entries as given, duplicates included; throws std::bad_alloc.
  DataMap(std::initializer_list<Entry> given);

  // The value of the first entry of that name, or null; never inserts.
  FieldValue* operator[](const SafeString& name);

  // Assigns to the first entry of that name, or appends a new one. False, with
  // the record unchanged, only when there is no memory for an entry; making a
  // Name of another text throws std::bad_alloc.
  bool insert_or_assign(const Name& name, const FieldValue& value);
  // Appends, whether the name exists or not. False as above.
  bool emplace(const Name& name, const FieldValue& value);
  // The same for a value that is still to be filled in; null without memory.
  FieldValue* emplace(const Name& name);

  // The first entry of that name, or end().
  iterator find(const SafeString& name);
  const_iterator find(const SafeString& name) const;
  // Removes the first entry of that name, if any.
  void erase(const SafeString& name);
  void clear() { entries.clear(); }

  // Iterators are nodes: step with ->next until end(), which is null. For a
  // loop over the entries use data().
  iterator begin() { return entries.head(); }
  const_iterator begin() const { return data().head; }
  iterator end() { return nullptr; }
  const_iterator end() const { return nullptr; }
  const List& data() const { return entries.list(); }

  // Allocates memory for the next n entries at once, where that can be had.
  // REQUIRES: it is the first time.
  void reserve(size_t n) noexcept { entries.reserve(n); }

  bool empty() const { return data().empty(); }
  size_t size() const { return data().count; }

  // CRC-32/JAMCRC over each entry's name and the 4 bytes of its value's
  // checksum, in order; 0xFFFFFFFF for an empty record.
  uint32 crc() const;

 private:
  NamedList<Entry> entries;
};

}  // namespace Brindle
