#pragma once

#include "schema/meta.h"

namespace Brindle {

// Finds fields by name for callers who mostly ask in the order of the schema,
// which then takes no search. The schema must stay as it is meanwhile.
class FieldFinder {
 public:
  explicit FieldFinder(const Meta& m) : meta(m), next(m.fields().head) {}

  // As Meta::field().
  const MetaField* find(const SafeString& name) {
    for (; next != nullptr; next = next->next) {
      const MetaField& field = next->value;
      if (field.name.text() == name) {
        next = next->next;
        return &field;
      }
    }
    ordered = false;
    return meta.field(name);
  }

  // Whether each name was behind all those before it, so that none came twice.
  bool inOrder() const { return ordered; }

 private:
  const Meta& meta;
  const gs::LinkedList<MetaField>::Node*
      next;  // behind the last that was found
  bool ordered = true;
};

}  // namespace Brindle
