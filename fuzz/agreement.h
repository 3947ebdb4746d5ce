#pragma once

#include <vector>

#include "fuzz/invariant.h"
#include "fuzz/reference.h"
#include "serialization/serializer.h"

// Product and reference side by side. Each function aborts where they differ.

inline gs::ConstBuf constBuf(std::string_view bytes) {
  return {reference::bytesOf(bytes), bytes.size()};
}

// In storage of exactly their size: the sanitizer sees any read past them.
inline gs::container<uint8> exactCopy(std::string_view bytes) {
  gs::container<uint8> copy;
  copy.assign(reference::bytesOf(bytes), bytes.size());
  return copy;
}

void requireSame(const Brindle::FieldValue& value,
                 const reference::Field& field, const reference::Value& model);
void requireSame(const Brindle::Meta& meta, const reference::Schema& model);
void requireSame(const Brindle::DataMap& record,
                 const reference::Schema& schema,
                 const std::vector<reference::Entry>& model);

// Written bytes; an empty container stands for none.
void requireSame(const gs::container<uint8>& written,
                 const std::optional<std::string>& model);
