// A whole block: read, written again, and asked what it is.

#include "binding/block_identity.h"
#include "binding/block_reader.h"
#include "fuzz/agreement.h"
#include "fuzz/block_model.h"
#include "fuzz/mutator.h"

namespace {

using Entries = std::vector<reference::Entry>;

struct Model {
  reference::Schema schema;
  Entries record;
  bool hasPayload = false;
};

bool readModel(std::string bytes, Model& out) {
  reference::Reader reader(bytes);
  if (!reader.schema(1, out.schema)) return false;
  // The payload stands where the header says, wherever the last field ends.
  const size_t size = reference::HEADER_SIZE + static_cast<uint8>(bytes[6]) +
                      256U * static_cast<uint8>(bytes[7]) +
                      ((out.schema.flags & reference::HAS_CRC) != 0 ? 2 : 0);
  out.hasPayload = size < bytes.size();
  if (!out.hasPayload) return true;
  reference::Reader payload(bytes, size, bytes.size());
  if (!payload.packet(out.schema, 0, out.record)) out.record.clear();
  return true;
}

bool readBoth(const std::string& bytes, brindle_napi::Block& block,
              Model& model) {
  const bool readable = readModel(bytes, model);
  INVARIANT(brindle_napi::readBlock(exactCopy(bytes), block) == readable);
  INVARIANT((block.meta != nullptr) == readable);
  if (!readable) return false;
  requireSame(*block.meta, model.schema);
  requireSame(block.record, model.schema, model.record);
  INVARIANT(block.hasPayload == model.hasPayload);
  return true;
}

// What packMetaBlock makes of a block without edits.
std::string repack(const brindle_napi::Block& block) {
  std::string out(reference::viewOf(block.meta->pack(0)));
  if (!out.empty() && block.hasPayload) {
    const gs::container<uint8> payload =
        Brindle::Serializer::serialize(*block.meta, block.record, 0);
    if (payload.empty()) return {};
    out += reference::viewOf(payload);
  }
  return out;
}

std::string repackModel(const Model& model) {
  const auto schema = reference::write(model.schema);
  const auto payload = model.hasPayload
                           ? reference::writeRecord(model.schema, model.record)
                           : "";
  return schema && payload ? *schema + *payload : "";
}

// Repacking writes no trailer, so what asks for one cannot be read again.
void checkFixedPoint(const std::string& packed, const Model& model) {
  const bool flagged = (model.schema.flags & reference::HAS_CRC) != 0;
  if (packed.empty() || packed.size() > 65535 || flagged ||
      model.schema.nestedHasCrc()) {
    return;
  }
  brindle_napi::Block again;
  Model modelAgain;
  INVARIANT(readBoth(packed, again, modelAgain));
  requireSame(*again.meta, model.schema);
  requireSame(again.record, model.schema, model.record);
  INVARIANT(repack(again) == packed);
}

void checkIdentity(const Brindle::Meta& meta, const reference::Schema& schema) {
  Uuid uuid;
  const std::optional<std::string> modelUuid = reference::uuidOf(schema);
  INVARIANT(brindle_napi::getBlockUuid(meta, uuid) == modelUuid.has_value());
  INVARIANT(!modelUuid ||
            reference::viewOf({uuid.data(), Uuid::SIZE}) == *modelUuid);

  uint32 instance = 0;
  const std::optional<uint32> modelInstance = reference::instanceOf(schema);
  INVARIANT(brindle_napi::getBlockInstance(meta, instance) ==
            modelInstance.has_value());
  INVARIANT(!modelInstance || instance == *modelInstance);

  const SafeString* text = brindle_napi::getDescriptorUuid(meta);
  const reference::Field* model = reference::constantOf(schema, "__uuidDescr");
  if (model == nullptr)
    model = reference::constantOf(schema, "descriptor_uuid");
  const bool isText =
      model != nullptr && reference::isSingle(*model, reference::STRING);
  INVARIANT((text != nullptr) == isText);
  INVARIANT(!isText ||
            reference::viewOf(text->bytes()) == model->constant->content);
}

}  // namespace

void repair(std::string& input) {
  reference::Reader reader(input, true);
  reference::Schema schema;
  Entries record;
  if (reader.schema(1, schema)) reader.packet(schema, 0, record);
}

std::vector<Window> schemasIn(const std::string& input) {
  return {{0, input.size(), false}};
}

extern "C" int LLVMFuzzerTestOneInput(const uint8* data, size_t size) {
  const std::string input(reinterpret_cast<const char*>(data), size);
  brindle_napi::Block block;
  Model model;
  if (!readBoth(input, block, model)) return 0;
  const std::string packed = repack(block);
  INVARIANT(packed == repackModel(model));
  checkFixedPoint(packed, model);
  checkIdentity(*block.meta, model.schema);
  return 0;
}
