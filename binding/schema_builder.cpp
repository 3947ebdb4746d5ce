#include "binding/schema_builder.h"

#include <new>

#include "binding/limits.h"
#include "binding/property.h"
#include "binding/refusal.h"
#include "binding/to_js.h"
#include "binding/to_native.h"
#include "schema/checks.h"

namespace brindle_napi {

namespace {

using Brindle::EnumMapping;
using Brindle::FieldType;
using Brindle::FieldValue;
using Brindle::Meta;

// What fields and metaFields have in common, and how their faults are worded.
struct FieldWords {
  const char* notObject;
  const char* notStrings;
  const char* unknownType;  // the type follows
  const char* badOptions;   // the quoted name follows
};
constexpr FieldWords FIELD = {
    "BlockSpec.fields[i] must be an object",
    "field.name / field.type must be strings",
    "unknown field type: ",
    "invalid enumOptions on field ",
};
constexpr FieldWords META_FIELD = {
    "metaFields[i] must be an object",
    "metaField.name / type must be strings",
    "unknown meta-field type: ",
    "invalid enumOptions on metaField ",
};

std::string quoted(const std::string& name) { return "'" + name + "'"; }

bool readEnumOption(Napi::Env env, const Napi::Value& option,
                    EnumMapping& entries) {
  if (!option.IsObject()) return false;
  const Napi::Value key = readProperty(env, option, "key");
  const Napi::Value code = readProperty(env, option, "code");
  if (!key.IsString() || !code.IsNumber()) return false;
  const double number = code.As<Napi::Number>().DoubleValue();
  if (!(number >= 0 && number <= 255)) return false;
  entries.append({safeText(textOf(key)), static_cast<uint8>(number)});
  return true;
}

// A list of fields; undefined stands for none.
bool readList(Napi::Env env, const Napi::Object& blockSpec, const char* key,
              const char* notArray, Napi::Value& array, BuildError& error) {
  array = readProperty(env, blockSpec, key);
  if (array.IsArray() || array.IsUndefined()) return true;
  error = {INVALID_ARGUMENT, notArray};
  return false;
}

// Reads one BlockSpec; `level` counts how deep it is nested, from 1, and
// `count` how many have been read in all.
class SchemaBuilder {
 public:
  SchemaBuilder(Napi::Env e, BuildError& buildError, unsigned nesting,
                unsigned& counter)
      : env(e), error(buildError), level(nesting), count(counter) {}

  std::shared_ptr<Meta> build(const Napi::Object& blockSpec) {
    if (level > MAX_SPEC_NESTING || ++count > MAX_SPEC_COUNT) {
      // Answered as packing would answer it, with the line it would print.
      Brindle::checkNesting(MAX_SPEC_NESTING);
      error = packFailed();
      return nullptr;
    }
    return readHeader(blockSpec) && addFields(blockSpec) &&
                   addMetaFields(blockSpec)
               ? meta
               : nullptr;
  }

 private:
  // What fields and metaFields have in common.
  struct Head {
    std::string text;  // the name as JavaScript gave it, for messages
    SafeString name;   // the name as the schema keeps it
    FieldType type = FieldType::INT8;
    bool repeated = false;
    EnumMapping options;
  };

  bool fail(std::string message, const char* code = INVALID_ARGUMENT) {
    error = {code, std::move(message)};
    return false;
  }

  bool readHeader(const Napi::Object& blockSpec) {
    const Napi::Value name = readProperty(env, blockSpec, "metaName");
    if (!name.IsString()) return fail("BlockSpec.metaName must be a string");
    meta->setName(safeText(textOf(name)));
    if (isTrue(readProperty(env, blockSpec, "hasCrc"))) {
      meta->setFlag(Brindle::MetaFlags::HAS_CRC, true);
    }
    return true;
  }

  bool addFields(const Napi::Object& blockSpec) {
    Napi::Value fields;
    return readFields(env, blockSpec, fields, error) &&
           addEach(fields, &SchemaBuilder::addField);
  }

  bool addMetaFields(const Napi::Object& blockSpec) {
    Napi::Value fields;
    return readList(env, blockSpec, "metaFields",
                    "BlockSpec.metaFields must be an array (or omitted)",
                    fields, error) &&
           addEach(fields, &SchemaBuilder::addMetaField);
  }

  bool addEach(const Napi::Value& fields,
               bool (SchemaBuilder::*add)(const Napi::Value&)) {
    return fields.IsUndefined() ||
           forEachElement(env, fields, [&](const Napi::Value& field) {
             return (this->*add)(field);
           });
  }

  bool readHead(const FieldWords& words, const Napi::Value& field, Head& head,
                Napi::Value* value) {
    if (!field.IsObject()) return fail(words.notObject);
    const Napi::Value name = readProperty(env, field, "name");
    const Napi::Value type = readProperty(env, field, "type");
    if (value != nullptr) *value = readProperty(env, field, "value");
    if (!name.IsString() || !type.IsString()) return fail(words.notStrings);
    head.text = textOf(name);
    head.name = safeText(head.text);
    if (!parseFieldType(textOf(type), head.type)) {
      return fail(words.unknownType + textOf(type), UNKNOWN_FIELD_TYPE);
    }
    head.repeated = isTrue(readProperty(env, field, "repeated"));
    const Napi::Value options = readProperty(env, field, "enumOptions");
    return readEnumOptions(env, options, head.options) ||
           fail(words.badOptions + quoted(head.text));
  }

  // A nested BlockSpec counts for a field of any type.
  bool readNested(const Napi::Value& field, const Head& head,
                  std::shared_ptr<Meta>& nested) {
    const Napi::Value blockSpec = readProperty(env, field, "nested");
    if (blockSpec.IsObject()) {
      SchemaBuilder builder(env, error, level + 1, count);
      nested = builder.build(blockSpec.As<Napi::Object>());
      return nested != nullptr;
    }
    return head.type != FieldType::DATA_MAP ||
           fail("datamap field " + quoted(head.text) +
                " requires nested BlockSpec");
  }

  bool addField(const Napi::Value& field) {
    Head head;
    std::shared_ptr<Meta> nested;
    if (!readHead(FIELD, field, head, nullptr) ||
        !readNested(field, head, nested)) {
      return false;
    }
    return meta->addField(head.name, head.type, head.repeated,
                          std::move(head.options), std::move(nested))
               ? checkAdded(head)
               : fail("Meta::addField failed for " + quoted(head.text),
                      INTERNAL);
  }

  bool addMetaField(const Napi::Value& field) {
    Head head;
    Napi::Value value;
    FieldValue constant;
    if (!readHead(META_FIELD, field, head, &value)) return false;
    // Never a nested schema: a constant cannot be a record.
    if (!napiToFieldValue(env, value, head.type, head.repeated, constant,
                          nullptr)) {
      return fail("metaField " + quoted(head.text) + " value type mismatch");
    }
    return meta->addMetaField(head.name, head.type, constant, head.repeated,
                              std::move(head.options))
               ? checkAdded(head)
               : fail("Meta::addMetaField failed for " + quoted(head.text),
                      INTERNAL);
  }

  // A schema that had no memory for a field says nothing of it.
  bool checkAdded(const Head& head) const {
    if (meta->field(head.name) == nullptr) throw std::bad_alloc();
    return true;
  }

  Napi::Env env;
  BuildError& error;
  unsigned level;
  unsigned& count;
  std::shared_ptr<Meta> meta = std::make_shared<Meta>();
};

}  // namespace

std::shared_ptr<Meta> buildMetaSchema(Napi::Env env,
                                      const Napi::Object& blockSpec,
                                      BuildError& error) {
  unsigned count = 0;
  return SchemaBuilder(env, error, 1, count).build(blockSpec);
}

bool readFields(Napi::Env env, const Napi::Object& blockSpec,
                Napi::Value& array, BuildError& error) {
  return readList(env, blockSpec, "fields",
                  "BlockSpec.fields must be an array (or omitted)", array,
                  error);
}

bool readEnumOptions(Napi::Env env, const Napi::Value& options,
                     EnumMapping& entries) {
  if (isAbsent(options)) return true;
  return options.IsArray() &&
         forEachElement(env, options, [&](const Napi::Value& option) {
           return readEnumOption(env, option, entries);
         });
}

bool parseFieldType(std::string_view text, FieldType& type) {
  for (uint8 code = 0; code < Brindle::FIELD_TYPE_COUNT; ++code) {
    if (text != fieldTypeToString(FieldType(code))) continue;
    type = FieldType(code);
    return true;
  }
  return false;
}

BuildError packFailed() {
  return {INTERNAL, "Meta::pack() returned empty buffer"};
}

}  // namespace brindle_napi
