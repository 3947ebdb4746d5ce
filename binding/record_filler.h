#pragma once

#include "schema/field_finder.h"
#include "serialization/data_map.h"

namespace brindle_napi {

// Fills a record with values of fields that are looked up by name. As long as
// the names come in the order of the schema, nothing is searched for.
class RecordFiller {
 public:
  RecordFiller(const Brindle::Meta& meta, Brindle::DataMap& filled)
      : fields(meta), record(filled), wasEmpty(filled.empty()) {}

  // Null if there is no such field.
  const Brindle::MetaField* find(const SafeString& name) {
    return fields.find(name);
  }

  // Assigns to the entry of the field that was found last, or appends one.
  // False when there is no memory for it.
  bool put(const Brindle::MetaField& found, const Brindle::FieldValue& value) {
    return wasEmpty && fields.inOrder()
               ? record.emplace(found.name, value)
               : record.insert_or_assign(found.name, value);
  }

 private:
  Brindle::FieldFinder fields;
  Brindle::DataMap& record;
  const bool wasEmpty;
};

}  // namespace brindle_napi
