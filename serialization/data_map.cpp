#include "serialization/data_map.h"

#include "schema/checksum.h"

namespace Brindle {

DataMap::DataMap(std::initializer_list<Entry> given) {
  for (const Entry& entry : given) {
    if (!emplace(entry.name, entry.value)) throw std::bad_alloc();
  }
}

FieldValue* DataMap::operator[](const SafeString& name) {
  const iterator found = find(name);
  return found == end() ? nullptr : &found->value.value;
}

bool DataMap::insert_or_assign(const Name& name, const FieldValue& value) {
  entries.extendIndex();
  FieldValue* existing = (*this)[name];
  if (existing == nullptr) return emplace(name, value);
  *existing = value;
  return true;
}

bool DataMap::emplace(const Name& name, const FieldValue& value) {
  return entries.append({name, value}) != nullptr;
}

FieldValue* DataMap::emplace(const Name& name) {
  Entry* added = entries.append({name, {}});
  return added == nullptr ? nullptr : &added->value;
}

DataMap::iterator DataMap::find(const SafeString& name) {
  return entries.find(name);
}

DataMap::const_iterator DataMap::find(const SafeString& name) const {
  return entries.find(name);
}

void DataMap::erase(const SafeString& name) {
  const iterator found = find(name);
  if (found != end()) entries.remove(found);
}

uint32 DataMap::crc() const {
  Checksum sum;
  for (const Entry& entry : data()) {
    sum.add(entry.name.text());
    sum.add(entry.value.crc());
  }
  return sum.value();
}

}  // namespace Brindle
