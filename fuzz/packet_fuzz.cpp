// A schema behind its length in two bytes, then a data packet for it.

#include "fuzz/agreement.h"
#include "fuzz/mutator.h"

namespace {

using Brindle::DataMap;
using Brindle::Meta;
using Brindle::Serializer;
using Entries = std::vector<reference::Entry>;

size_t schemaSize(const std::string& input) {
  if (input.size() < 2) return 0;
  const size_t size =
      static_cast<uint8>(input[0]) + 256U * static_cast<uint8>(input[1]);
  return std::min(size, input.size() - 2);
}

DataMap decode(const Meta& meta, const reference::Schema& schema,
               const std::string& packet, uint8 depth, const uint16* expected) {
  std::string copy = packet;
  Entries model;
  if (!reference::Reader(copy).packet(schema, depth, model, expected)) {
    model.clear();
  }
  DataMap record =
      Serializer::deserialize(meta, exactCopy(packet), depth, expected);
  requireSame(record, schema, model);
  return record;
}

void checkChecksumChoices(const Meta& meta, const reference::Schema& schema,
                          const std::string& packet) {
  const uint16 crc = reference::crc16(packet);
  const uint16 wrong = crc ^ 1;
  decode(meta, schema, packet, 0, &crc);
  decode(meta, schema, packet, 0, &wrong);
}

void checkLookups(DataMap record) {
  for (auto* node = record.begin(); node != record.end(); node = node->next) {
    const auto* first = record.find(node->value.name);
    INVARIANT(first != nullptr && first->value.name.text() == node->value.name);
    INVARIANT(record[node->value.name] == &first->value.value);
  }
  const size_t size = record.size();
  const SafeString name(record.begin()->value.name);
  INVARIANT(record.insert_or_assign(name, uint16{7}));
  INVARIANT(record.size() == size && *record[name]->get<uint16>() == 7);
  record.erase(name);
  INVARIANT(record.size() == size - 1);
}

// What decodes encodes again, except for entries of constants, which readers
// take and writers refuse; and reads back as the same if its length fits the
// 16 bits that readers compute in.
void checkEncoding(const Meta& meta, const reference::Schema& schema,
                   const DataMap& record, const Entries& model) {
  const std::optional<std::string> packet =
      reference::writeRecord(schema, model);
  requireSame(Serializer::serialize(meta, record, 0), packet);
  uint16 crc = 0;
  const gs::container<uint8> withCrc =
      Serializer::serializeWithCrc(meta, record, &crc);
  INVARIANT(withCrc.empty() == !packet);
  if (!packet || packet->size() > 65535) return;

  std::string flagged = *packet;
  flagged[1] = 1;
  INVARIANT(crc == reference::crc16(flagged));
  requireSame(withCrc, flagged + reference::le(crc));
  for (const std::string& bytes : {*packet, flagged + reference::le(crc)}) {
    requireSame(decode(meta, schema, bytes, 0, nullptr), schema, model);
  }
}

void checkRecord(const Meta& meta, const reference::Schema& schema,
                 std::string packet) {
  const DataMap record = decode(meta, schema, packet, 0, nullptr);
  decode(meta, schema, packet, 5, nullptr);
  decode(meta, schema, packet, 6, nullptr);
  checkChecksumChoices(meta, schema, packet);
  if (record.empty()) return;
  Entries model;
  reference::Reader(packet).packet(schema, 0, model);
  checkLookups(record);
  checkEncoding(meta, schema, record, model);
}

// The bytes as a value of each field in turn.
void checkFields(const Meta& meta, const reference::Schema& schema,
                 std::string bytes) {
  const gs::container<uint8> copy = exactCopy(bytes);
  for (const Brindle::MetaField& field : meta.fields()) {
    const reference::Field& modelField = schema.fields[field.index];
    reference::Reader reader(bytes);
    reference::Value model;
    size_t offset = 0;
    Brindle::FieldValue value;
    const bool readable = reader.value(modelField, 0, model);
    INVARIANT(Serializer::deserializeField(field, copy, offset, value, 0) ==
              readable);
    if (!readable) continue;
    INVARIANT(offset == reader.place());
    requireSame(value, modelField, model);
    gs::container<uint8> written;
    INVARIANT(Serializer::serializeField(field, value, written, 0) ==
              model.encoded.has_value());
    INVARIANT(!model.encoded || reference::viewOf(written) == *model.encoded);
  }
}

void checkSizedPacket(const Meta& meta, const reference::Schema& schema,
                      std::string bytes) {
  reference::Reader reader(bytes);
  Entries model;
  const bool readable = reader.sizedPacket(schema, 0, model);
  size_t offset = 0;
  DataMap record;
  record.emplace("untouched", int8{1});
  INVARIANT(Serializer::deserializeDataMap(exactCopy(bytes), offset, meta,
                                           record, 0) == readable);
  if (readable) {
    INVARIANT(offset == reader.place());
    requireSame(record, schema, model);
  } else {
    INVARIANT(record.size() == 1 && record.find("untouched") != nullptr);
  }
}

void checkMetaId(std::string bytes) {
  reference::Reader reader(bytes);
  uint64 skipped = 0;
  uint64 id = 0;
  const bool found = reader.varint(skipped) && reader.varint(id);
  INVARIANT(Serializer::getMetaIdFromPacket(exactCopy(bytes)) ==
            (found ? static_cast<uint32>(id) : 0xFFFFFFFF));
}

std::string findPacket(std::string bytes, size_t offset) {
  for (size_t start = offset; start < bytes.size(); ++start) {
    reference::Reader reader(bytes, start, bytes.size());
    uint64 length = 0;
    reader.varint(length);
    const auto whole = static_cast<uint16>(reader.place() - start + length + 2);
    if (reader.place() < bytes.size() && whole <= bytes.size() - start) {
      return bytes.substr(start, whole);
    }
  }
  return {};
}

void checkGetPacket(const std::string& bytes, size_t offset) {
  INVARIANT(reference::viewOf(Serializer::getPacket(
                exactCopy(bytes), offset)) == findPacket(bytes, offset));
}

}  // namespace

void repair(std::string& input) {
  if (input.size() < 2) return;
  reference::Reader reader(input, 2, input.size(), true);
  reference::Schema schema;
  if (!reader.schema(1, schema)) return;
  const size_t end = reader.place();
  input.replace(0, 2, reference::le(static_cast<uint16>(end - 2)));
  Entries record;
  reader.packet(schema, 0, record);
}

std::vector<Window> schemasIn(const std::string& input) {
  if (input.size() < 2) return {};
  return {{2, 2 + schemaSize(input), true}};
}

extern "C" int LLVMFuzzerTestOneInput(const uint8* data, size_t size) {
  const std::string input(reinterpret_cast<const char*>(data), size);
  const size_t end = 2 + schemaSize(input);
  const std::string packet = input.size() < end ? "" : input.substr(end);
  checkMetaId(packet);
  for (const size_t offset : {size_t{0}, size_t{1}, size / 2, size, SIZE_MAX}) {
    checkGetPacket(packet, offset);
  }

  if (input.size() < 2) return 0;
  std::string packed = input.substr(2, end - 2);
  reference::Schema schema;
  const std::unique_ptr<Meta> meta =
      Meta::unpack(exactCopy(packed), 0, nullptr);
  INVARIANT((meta != nullptr) == reference::Reader(packed).schema(1, schema));
  if (!meta) return 0;
  checkRecord(*meta, schema, packet);
  checkFields(*meta, schema, packet);
  checkSizedPacket(*meta, schema, packet);
  return 0;
}
