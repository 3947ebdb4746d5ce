#include "schema/field_value.h"

#include "schema/checksum.h"
#include "serialization/data_map.h"

namespace Brindle {

namespace {

void add(Checksum& sum, const SafeString& text) { sum.add(text); }
void add(Checksum& sum, const DataMap& record) { sum.add(record.crc()); }

struct CrcOf {
  template <class T>
  uint32 operator()(const T& plain) const {
    Checksum sum;
    sum.add(plain);
    return sum.value();
  }
  uint32 operator()(const std::shared_ptr<SafeString>& text) const {
    return text ? (*this)(*text) : 0;
  }
  uint32 operator()(const std::shared_ptr<DataMap>& record) const {
    return record ? record->crc() : 0;
  }
  template <class T>
  uint32 operator()(const ArrayOf<T>& array) const {
    if (!array) return 0;
    Checksum sum;
    if constexpr (std::is_trivially_copyable_v<T>) {
      sum.add(array->data, array->size * sizeof(T));
    } else {
      for (const T& element : *array) add(sum, element);
    }
    return sum.value();
  }
};

}  // namespace

uint32 FieldValue::crc() const { return visit(CrcOf()); }

FieldType getFieldType(const FieldValue& value) {
  return FieldType(value.index() % FIELD_TYPE_COUNT);
}

}  // namespace Brindle
