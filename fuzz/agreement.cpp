#include "fuzz/agreement.h"

#include "schema/meta.h"

namespace {

using Brindle::DataMap;
using Brindle::FieldValue;
using reference::crc32;
using reference::le;

std::string_view textOf(const SafeString& text) {
  return reference::viewOf(text.bytes());
}

std::string contentOf(const DataMap& record);

// The content of a value, gathered without the product's own checksum code.
struct Content {
  template <class T>
  std::string operator()(const T& plain) const {
    return {reinterpret_cast<const char*>(&plain), sizeof plain};
  }
  std::string operator()(const SafeString& text) const {
    return std::string(textOf(text));
  }
  std::string operator()(const DataMap& record) const {
    return le(crc32(contentOf(record)));
  }
  std::string operator()(const std::shared_ptr<SafeString>& text) const {
    INVARIANT(text != nullptr && (*text)[text->length()] == '\0');
    return (*this)(*text);
  }
  std::string operator()(const std::shared_ptr<DataMap>& record) const {
    INVARIANT(record != nullptr);
    return contentOf(*record);
  }
  template <class T>
  std::string operator()(const Brindle::ArrayOf<T>& array) const {
    INVARIANT(array != nullptr);
    std::string all;
    for (const T& element : *array) all += (*this)(element);
    return all;
  }
};

std::string contentOf(const DataMap& record) {
  std::string all;
  for (const DataMap::Entry& entry : record.data()) {
    all += textOf(entry.name);
    all += le(crc32(entry.value.visit(Content())));
  }
  return all;
}

void requireSameField(const Brindle::MetaField& field,
                      const reference::Field& model) {
  INVARIANT(textOf(field.name) == model.name);
  INVARIANT(static_cast<uint8>(field.type) == model.type);
  INVARIANT(static_cast<uint8>(field.flags) == model.flags);
  INVARIANT(field.enumMapping.count() == model.entries.size());
  auto entry = field.enumMapping.begin();
  for (const auto& [name, code] : model.entries) {
    INVARIANT(textOf(entry->name) == name);
    INVARIANT(entry->value == code);
    INVARIANT(field.enumMapping.hasCode(code));
    ++entry;
  }
  INVARIANT((field.meta != nullptr) == (model.nested != nullptr));
  if (field.meta) requireSame(*field.meta, *model.nested);
  INVARIANT((field.value != nullptr) == model.constant.has_value());
  if (field.value) requireSame(*field.value, model, *model.constant);
}

}  // namespace

void requireSame(const FieldValue& value, const reference::Field& field,
                 const reference::Value& model) {
  const bool repeated = (field.flags & reference::REPEATED) != 0;
  INVARIANT(value.index() ==
            field.type + (repeated ? size_t{reference::TYPE_COUNT} : 0));
  INVARIANT(value.isArray() == repeated);
  INVARIANT(static_cast<uint8>(Brindle::getFieldType(value)) == field.type);
  INVARIANT(value.visit(Content()) == model.content);
  INVARIANT(value.crc() == crc32(model.content));
}

void requireSame(const Brindle::Meta& meta, const reference::Schema& model) {
  INVARIANT(textOf(meta.name()) == model.name);
  INVARIANT(meta.flag(Brindle::MetaFlags(model.flags)));
  INVARIANT(meta.crc() == model.crc() && meta.hash() == meta.crc());
  INVARIANT(meta.fields().count == model.fields.size());
  uint16 index = 0;
  for (const Brindle::MetaField& field : meta.fields()) {
    INVARIANT(field.index == index);
    requireSameField(field, model.fields[index++]);
    INVARIANT(meta.field(field.name) == &field);
  }
}

void requireSame(const DataMap& record, const reference::Schema& schema,
                 const std::vector<reference::Entry>& model) {
  INVARIANT(record.size() == model.size() &&
            record.data().count == model.size());
  INVARIANT(record.empty() == model.empty());
  const auto* node = record.begin();
  for (const auto& [field, value] : model) {
    INVARIANT(textOf(node->value.name) == schema.fields[field].name);
    requireSame(node->value.value, schema.fields[field], value);
    node = node->next;
  }
  INVARIANT(node == record.end());
  INVARIANT(record.crc() == crc32(contentOf(record)));
}

void requireSame(const gs::container<uint8>& written,
                 const std::optional<std::string>& model) {
  INVARIANT(written.empty() == !model.has_value());
  INVARIANT(!model || reference::viewOf(written) == *model);
}
