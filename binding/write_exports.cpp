// packMetaBlock and buildBlock: one packed block written.

#include "binding/block_reader.h"
#include "binding/buffers.h"
#include "binding/exports.h"
#include "binding/guard.h"
#include "binding/limits.h"
#include "binding/property.h"
#include "binding/record_filler.h"
#include "binding/schema_builder.h"
#include "binding/to_js.h"
#include "binding/to_native.h"
#include "serialization/serializer.h"

namespace brindle_napi {

namespace {

using Brindle::DataMap;
using Brindle::Meta;
using Brindle::MetaField;

Refusal refuseWith(const BuildError& error) {
  return {error.code, error.message};
}

// What an export says of values that it cannot store or write.
struct DraftWords {
  const char* insertFailed;  // the quoted name of the field follows
  const char* tooLarge;
};

// The record of a block, as it is put together and written behind the schema.
class BlockDraft {
 public:
  BlockDraft(const Meta& blockMeta, const DraftWords& draftWords,
             DataMap initial = {})
      : meta(blockMeta),
        words(draftWords),
        record(std::move(initial)),
        filler(meta, record) {}
  BlockDraft(const BlockDraft&) = delete;
  BlockDraft& operator=(const BlockDraft&) = delete;

  const MetaField* field(const std::string& name) {
    return filler.find(viewOf(name));
  }

  // Converts one value and stores it under the field's name; `text` is that
  // name as JavaScript gave it, for the messages.
  Refusal store(Napi::Env env, const Napi::Value& value, const MetaField& field,
                const std::string& text) {
    Brindle::FieldValue converted;
    if (!napiToFieldValue(env, value, field.type, field.isRepeated(), converted,
                          field.meta.get(), budget)) {
      if (budget.spent()) return tooLarge();
      return {INVALID_ARGUMENT, "value type mismatch for field '" + text + "'"};
    }
    if (filler.put(field, converted)) return {};
    return {INTERNAL, words.insertFailed + ("'" + text + "'")};
  }

  // The block: the packed schema and, unless there is to be no payload, the
  // record behind it.
  Refusal finish(Napi::Env env, const gs::container<uint8>& packed,
                 bool hasPayload, Napi::Value& block) const {
    if (packed.empty()) return refuseWith(packFailed());
    gs::container<uint8> payload;
    if (hasPayload) {
      payload = Brindle::Serializer::serialize(meta, record, 0);
      if (payload.empty()) {
        return {INTERNAL, "Serializer::serialize() returned empty buffer"};
      }
    }
    if (packed.size + payload.size > MAX_META_BLOCK_BYTES) return tooLarge();
    block = byteArrayToBuffer(env, packed, payload);
    return {};
  }

  Refusal tooLarge() const { return {BLOCK_TOO_LARGE, words.tooLarge}; }

  bool isEmpty() const { return record.empty(); }

  WorkBudget budget;

 private:
  const Meta& meta;
  const DraftWords& words;
  DataMap record;
  RecordFiller filler;
};

// The value, if any, of one element of BlockSpec.fields.
Refusal readFieldValue(Napi::Env env, const SpecKeys& keys,
                       const Napi::Value& element, BlockDraft& draft) {
  const Napi::Value value = readProperty(env, element, keys.value);
  if (isAbsent(value)) return {};
  std::string text;
  const bool named = convertToText(readProperty(env, element, keys.name), text);
  if (!draft.budget.takeName(text.size())) return draft.tooLarge();
  const MetaField* field = named ? draft.field(text) : nullptr;
  if (field == nullptr) {
    return {INTERNAL, "field lookup failed post-addField: " + text};
  }
  return draft.store(env, value, *field, text);
}

Refusal readFieldValues(Napi::Env env, const SpecKeys& keys,
                        const Napi::Object& blockSpec, BlockDraft& draft) {
  Napi::Value fields;
  BuildError error;
  // Read a second time, which may turn out otherwise. What is no array holds no
  // values; but what cannot be read may hold some.
  if (!readFields(env, blockSpec, fields, error) && isUnreadable(fields)) {
    return refuseWith(error);
  }
  Refusal refusal;
  if (fields.IsArray()) {
    forEachElement(env, fields, [&](const Napi::Value& element) {
      refusal = readFieldValue(env, keys, element, draft);
      return !refusal;
    });
  }
  return refusal;
}

Refusal build(Napi::Env env, const Napi::Object& blockSpec,
              Napi::Value& block) {
  static constexpr DraftWords WORDS = {"DataMap.insert_or_assign failed for ",
                                       BUILT_TOO_LARGE};
  const SpecKeys keys(env);
  BuildError error;
  const std::shared_ptr<Meta> meta =
      buildMetaSchema(env, keys, blockSpec, error);
  if (!meta) return refuseWith(error);
  BlockDraft draft(*meta, WORDS);
  if (Refusal refusal = readFieldValues(env, keys, blockSpec, draft)) {
    return refusal;
  }
  const gs::container<uint8> packed = meta->flag(Brindle::MetaFlags::HAS_CRC)
                                          ? meta->packWithCrc(nullptr)
                                          : meta->pack(0);
  return draft.finish(env, packed, true, block);
}

Napi::Value BuildBlock(const Napi::CallbackInfo& info) {
  static constexpr GuardTexts TEXTS = {
      "[brindle] buildBlock threw: %s\n",
      "[brindle] buildBlock threw unknown exception\n",
      "buildBlock internal failure"};
  const Napi::Env env = info.Env();
  return guarded(env, TEXTS, [&](Napi::Value& value) -> Refusal {
    if (info.Length() == 0 || !info[0].IsObject()) {
      return {INVALID_ARGUMENT, "buildBlock expects a BlockSpec object"};
    }
    return build(env, info[0].As<Napi::Object>(), value);
  });
}

// The names of an object's own enumerable properties. An edit must not get lost
// in silence, so names that cannot be listed are left to the guard.
Napi::Value ownNames(Napi::Env env, const Napi::Value& object) {
  napi_value names = nullptr;
  const auto filter =
      static_cast<napi_key_filter>(napi_key_enumerable | napi_key_skip_symbols);
  throwUnlessOk(
      env, napi_get_all_property_names(env, object, napi_key_own_only, filter,
                                       napi_key_numbers_to_strings, &names));
  return {env, names};
}

Refusal applyEdit(Napi::Env env, const Napi::Value& values,
                  const Napi::Value& key, BlockDraft& draft) {
  const std::string text = textOf(key);
  const MetaField* field = draft.field(text);
  if (!key.IsString() || field == nullptr || field->isMeta()) return {};
  const Napi::Value value = readProperty(env, values, napi_value(key));
  if (isAbsent(value)) return {};
  return draft.store(env, value, *field, text);
}

Refusal applyEdits(Napi::Env env, const Napi::Value& values,
                   BlockDraft& draft) {
  if (!draft.budget.takeElements(elementCount(values))) return draft.tooLarge();
  Refusal refusal;
  forEachElement(env, ownNames(env, values), [&](const Napi::Value& key) {
    refusal = applyEdit(env, values, key, draft);
    return !refusal;
  });
  return refusal;
}

Refusal repack(Napi::Env env, const Napi::Value& rawBytes,
               const Napi::Value& values, Napi::Value& out) {
  static constexpr DraftWords WORDS = {
      "DataMap.insert_or_assign failed for field ",
      "repacked block exceeds MAX_META_BLOCK_BYTES (65536)"};
  gs::container<uint8> bytes;
  if (!bufferToByteArray(rawBytes, bytes)) {
    return {INVALID_ARGUMENT, "failed to copy-in rawBytes"};
  }
  if (Refusal refusal = checkBlockSize(
          bytes.size, "rawBytes smaller than minimum header size",
          "rawBytes exceeds size cap")) {
    return refusal;
  }
  Block block;
  if (!readBlock(bytes, block)) return unpackFailed();
  BlockDraft draft(*block.meta, WORDS, std::move(block.record));
  if (Refusal refusal = applyEdits(env, values, draft)) return refusal;
  // Always without a trailer, whatever the flags say.
  const bool hasPayload = block.hasPayload || !draft.isEmpty();
  return draft.finish(env, block.meta->pack(0), hasPayload, out);
}

// The edits of a DTO. Read past readProperty: see ownNames.
Napi::Value readValues(Napi::Env env, const Napi::Value& dto) {
  napi_value values = nullptr;
  throwUnlessOk(env, napi_get_named_property(env, dto, "values", &values));
  return {env, values};
}

Napi::Value PackMetaBlock(const Napi::CallbackInfo& info) {
  static constexpr GuardTexts TEXTS = {
      "[brindle] packMetaBlock threw: %s\n",
      "[brindle] packMetaBlock threw unknown exception\n",
      "packMetaBlock internal failure"};
  const Napi::Env env = info.Env();
  return guarded(env, TEXTS, [&](Napi::Value& value) -> Refusal {
    if (info.Length() == 0 || !info[0].IsObject()) {
      return {INVALID_ARGUMENT, "packMetaBlock expects a MetaBlockDTO object"};
    }
    const Napi::Value rawBytes = readProperty(env, info[0], "rawBytes");
    if (!rawBytes.IsBuffer()) {
      return {NOT_IMPLEMENTED,
              "packMetaBlock from DTO without rawBytes is not supported. Pass "
              "the DTO's rawBytes (verbatim or with edited values)."};
    }
    const Napi::Value values = readValues(env, info[0]);
    if (!values.IsObject() || values.IsArray()) {
      value = byteArrayToBuffer(env, bytesOf(rawBytes));
      return {};
    }
    return repack(env, rawBytes, values, value);
  });
}

}  // namespace

void addWriteExports(Napi::Env env, Napi::Object exports) {
  exports.Set("packMetaBlock", Napi::Function::New(env, PackMetaBlock));
  exports.Set("buildBlock", Napi::Function::New(env, BuildBlock));
}

}  // namespace brindle_napi
