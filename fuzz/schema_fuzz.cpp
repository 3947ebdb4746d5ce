// A packed schema: reading, writing, and changing what has been read.

#include <cstring>

#include "fuzz/agreement.h"
#include "fuzz/mutator.h"
#include "schema/meta_header.h"
#include "schema/schema_scan.h"

namespace {

using Brindle::FieldType;
using Brindle::Meta;

std::unique_ptr<Meta> unpack(const std::string& bytes, uint8 depth,
                             const uint16* expected, reference::Schema& model) {
  std::string copy = bytes;
  const bool readable =
      reference::Reader(copy).schema(depth + 1U, model, expected);
  std::unique_ptr<Meta> meta = Meta::unpack(exactCopy(bytes), depth, expected);
  INVARIANT((meta != nullptr) == readable);
  if (meta) requireSame(*meta, model);
  return meta;
}

size_t expectedSize(const std::string& bytes) {
  if (bytes.size() < reference::HEADER_SIZE || !bytes.starts_with("MHCS\x0A")) {
    return 0;
  }
  const auto at = [&](size_t i) { return static_cast<uint8>(bytes[i]); };
  const size_t content = reference::HEADER_SIZE + at(6) + 256U * at(7);
  if (bytes.size() < content) return 0;
  return content + ((at(5) & reference::HAS_CRC) != 0 ? 2 : 0);
}

// A schema whose body fits the header can be read again, to the last byte.
void checkFixedPoint(const reference::Schema& schema,
                     const std::string& packed) {
  if (packed.size() > 65535 || schema.nestedHasCrc()) return;
  reference::Schema model;
  const std::unique_ptr<Meta> again = unpack(packed, 0, nullptr, model);
  INVARIANT(again != nullptr);
  const bool flagged = (model.flags & reference::HAS_CRC) != 0;
  requireSame(flagged ? again->packWithCrc(nullptr) : again->pack(0), packed);
}

void checkPacking(const Meta& meta, const reference::Schema& schema) {
  const std::optional<std::string> packed = reference::write(schema);
  requireSame(meta.pack(0), packed);
  const std::optional<std::string> withCrc = reference::writeWithCrc(schema);
  uint16 crc = 0;
  requireSame(meta.packWithCrc(&crc), withCrc);
  if (!packed) return;
  INVARIANT(withCrc->ends_with(reference::le(crc)));
  checkFixedPoint(schema, *withCrc);
  if ((schema.flags & reference::HAS_CRC) == 0)
    checkFixedPoint(schema, *packed);
}

void checkLookups(const Meta& meta, const reference::Schema& schema) {
  INVARIANT(meta.field("no such field") == nullptr ||
            reference::findField(schema, "no such field"));
  for (const Brindle::MetaField& field : meta.fields()) {
    std::pair<FieldType, bool> type;
    INVARIANT(meta.getFieldType(field.name, type));
    INVARIANT(type == std::pair(field.type, field.isRepeated()));
    Brindle::FieldValue value;
    INVARIANT(meta.getMetaValue(field.name, value) == field.isMeta());
    INVARIANT(!field.isMeta() || value.crc() == field.value->crc());
  }
}

// A scan finds all that is usual, and nothing that is not there.
void checkScan(const gs::ConstBuf& input, const Meta* meta) {
  uint64 constants = 0;
  bool agree = meta != nullptr;
  const auto visit = [&](const gs::ConstBuf& name,
                         const Brindle::FieldValue& value) {
    ++constants;
    Brindle::FieldValue held;
    agree = agree && meta->getMetaValue(cloneOf(name), held) &&
            held.index() == value.index() && held.crc() == value.crc();
  };
  const bool found = Brindle::scanSchema(input, visit);
  INVARIANT(!found || agree);
  if (meta == nullptr) return;
  uint64 wanted = 0;
  Brindle::PackedMetaHeader header;
  size_t offset = 0;
  header.extract(input, offset);
  bool unusual = header.fieldsCount != meta->fields().count;  // equal names
  for (const Brindle::MetaField& field : meta->fields()) {
    wanted += field.isMeta();
    unusual = unusual || field.type == FieldType::DATA_MAP ||
              (field.isMeta() && field.type == FieldType::ENUM) ||
              std::strlen(field.name.c_str()) != field.name.text().length();
  }
  INVARIANT(!found || constants == wanted);
  INVARIANT(found || unusual);
}

void checkChanges(Meta changed, reference::Schema model) {
  Meta copy(changed);
  requireSame(copy, model);
  INVARIANT(copy == changed);

  copy.setFlag(Brindle::MetaFlags(4), true);
  INVARIANT(copy.crc() == model.crc());
  copy.setFlags(Brindle::MetaFlags(model.flags = 4));
  copy.setName((model.name = "renamed").c_str());
  requireSame(copy, model);

  if (model.fields.empty()) return;
  const reference::Field first = model.fields.front();
  const bool hasPart =
      first.type == reference::ENUM || first.type == reference::DATA_MAP;
  // Nothing to add to a field that exists, but what it needs has to be given.
  INVARIANT(copy.addField(changed.fields().head->value.name,
                          FieldType(first.type), true) == !hasPart);
  INVARIANT(!copy.addField(changed.fields().head->value.name,
                           FieldType(first.type ^ 1), true));
  requireSame(copy, model);

  copy.deleteField(changed.fields().head->value.name);
  model.fields.erase(model.fields.begin());
  INVARIANT(copy.crc() == model.crc());
  INVARIANT(copy.fields().count == model.fields.size());
  changed = copy;
  INVARIANT(changed == copy && changed.fields().count == copy.fields().count);
}

}  // namespace

void repair(std::string& input) {
  reference::Schema schema;
  reference::Reader(input, true).schema(1, schema);
}

std::vector<Window> schemasIn(const std::string& input) {
  return {{0, input.size(), false}};
}

extern "C" int LLVMFuzzerTestOneInput(const uint8* data, size_t size) {
  const std::string input(reinterpret_cast<const char*>(data), size);
  INVARIANT(Meta::getPacketMetaSize(data, size) == expectedSize(input));
  INVARIANT(Meta::getPacketMetaSize(nullptr, size) == 0);

  reference::Schema schema;
  const std::unique_ptr<Meta> meta = unpack(input, 0, nullptr, schema);
  checkScan(exactCopy(input), meta.get());
  if (!meta) return 0;
  for (const uint8 depth : {uint8{4}, uint8{5}}) {
    reference::Schema deep;
    unpack(input, depth, nullptr, deep);
  }
  const size_t trailer = (schema.flags & reference::HAS_CRC) != 0 ? 2 : 0;
  const uint16 crc = reference::crc16(
      std::string_view(input).substr(0, expectedSize(input) - trailer));
  const uint16 wrong = crc ^ 1;
  for (const uint16* expected : {&crc, &wrong}) {
    reference::Schema again;
    INVARIANT((unpack(input, 0, expected, again) != nullptr) ==
              (expected == &crc));
  }
  checkLookups(*meta, schema);
  checkPacking(*meta, schema);
  checkChanges(*meta, schema);
  return 0;
}
