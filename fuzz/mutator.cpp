// Mutations that get past checksums: bytes or elements are changed, then three
// times out of four the input is repaired. libFuzzer also adds the reproducers
// of plain bytes, as the rest is left as it is.

#include "fuzz/mutator.h"

#include <algorithm>
#include <cstring>
#include <random>

#include "fuzz/invariant.h"
#include "fuzz/reference.h"

extern "C" size_t LLVMFuzzerMutate(uint8* data, size_t size, size_t maxSize);

namespace {

using reference::Field;
using reference::Schema;
using Random = std::minstd_rand;

void mutateBytes(std::string& input, size_t maxSize) {
  const size_t size = input.size();
  input.resize(maxSize);
  input.resize(
      LLVMFuzzerMutate(reinterpret_cast<uint8*>(input.data()), size, maxSize));
}

Field& pick(Schema& schema, Random& random) {
  return schema.fields[random() % schema.fields.size()];
}

std::string freshName(Random& random) {
  static const std::vector<std::string> NAMES = {
      "__uuid", "__instance", "__uuidDescr", "descriptor_uuid", "", "a"};
  const size_t i = random() % (NAMES.size() + 1);
  return i < NAMES.size() ? NAMES[i] : std::to_string(random() % 1000);
}

Field named(std::string name, uint64 type) {
  Field field;
  field.name = std::move(name);
  field.type = static_cast<uint8>(type);
  return field;
}

Field freshField(Random& random) {
  Field field = named(freshName(random), random() % 14);
  if (random() % 3 == 0) field.flags = reference::REPEATED;
  if (field.type == reference::ENUM) field.entries = {{"on", uint8{1}}};
  if (field.type == reference::DATA_MAP) {
    field.nested =
        std::make_shared<Schema>(Schema{"in", 0, {named("n", random() % 9)}});
  }
  return field;
}

// Changes which keep the schema one that can be written.
void mutateSchema(Schema& schema, Random& random) {
  if (schema.fields.empty() || random() % 4 == 0) {
    schema.fields.push_back(freshField(random));
    return;
  }
  Field& field = pick(schema, random);
  switch (random() % 8) {
    case 0:
      schema.fields.push_back(Field(field));
      break;
    case 1:
      std::swap(field, pick(schema, random));
      break;
    case 2:
      schema.fields.erase(schema.fields.begin() + (&field - &schema.fields[0]));
      break;
    case 3:
      field.name = freshName(random);
      break;
    case 4:
      field.entries.emplace_back(freshName(random), random() % 4);
      break;
    case 5:
      field.constant = pick(schema, random).constant;
      field.flags ^= reference::META;
      if (!field.constant) field.constant = {{}, std::string(1, '\1')};
      break;
    case 6:
      schema.flags ^= static_cast<uint8>(1U << random() % 3);
      break;
    default:
      if (field.nested) {
        mutateSchema(*field.nested, random);
      } else {
        field = {field.name,
                 reference::DATA_MAP,
                 field.flags,
                 {},
                 std::make_shared<Schema>(schema),
                 field.constant};
      }
  }
}

bool mutateElements(std::string& input, Random& random) {
  const std::vector<Window> windows = schemasIn(input);
  if (windows.empty()) return false;
  const Window& window = windows[random() % windows.size()];
  reference::Reader reader(input, window.begin, window.end);
  Schema schema;
  if (!reader.schema(1, schema)) return false;
  mutateSchema(schema, random);
  const std::optional<std::string> packed =
      random() % 4 == 0 ? writeWithCrc(schema) : write(schema);
  if (!packed) return false;
  input.replace(window.begin, reader.place() - window.begin, *packed);
  if (window.prefixed) {
    const size_t length = window.end - reader.place() + packed->size();
    input.replace(window.begin - 2, 2,
                  reference::le(static_cast<uint16>(length)));
  }
  return true;
}

}  // namespace

extern "C" size_t LLVMFuzzerCustomMutator(uint8* data, size_t size,
                                          size_t maxSize, unsigned seed) {
  Random random(seed);
  random.discard(4);
  std::string input(reinterpret_cast<char*>(data), size);
  if (random() % 3 != 0 || !mutateElements(input, random)) {
    mutateBytes(input, maxSize);
  }
  if (random() % 4 != 0) repair(input);
  input.resize(std::min(input.size(), maxSize));
  std::memcpy(data, input.data(), input.size());
  return input.size();
}
