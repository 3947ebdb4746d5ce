#include "binding/schema_builder.h"

#include <new>

#include "binding/limits.h"
#include "binding/property.h"
#include "binding/refusal.h"
#include "binding/schema_json.h"
#include "binding/to_native.h"
#include "schema/checks.h"

namespace brindle_napi {

namespace {

using Brindle::EnumMapping;
using Brindle::FieldFlags;
using Brindle::FieldType;
using Brindle::FieldValue;
using Brindle::Meta;
using Brindle::MetaField;

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

bool readEnumOption(Napi::Env env, const SpecKeys& keys,
                    const Napi::Value& option, EnumMapping& entries,
                    WorkBudget& budget) {
  if (!option.IsObject()) return false;
  const Napi::Value key = readProperty(env, option, keys.key);
  const Napi::Value code = readProperty(env, option, keys.code);
  if (!key.IsString() || !code.IsNumber()) return false;
  const double number = code.As<Napi::Number>().DoubleValue();
  if (!(number >= 0 && number <= 255)) return false;
  const std::string text = textOf(key);
  if (!budget.takeValue(text.size())) return false;
  entries.append({viewOf(text), static_cast<uint8>(number)});
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

// Reads one BlockSpec; `level` counts how deep it is nested, from 1.
class SchemaBuilder {
 public:
  SchemaBuilder(Napi::Env e, const SpecKeys& specKeys, BuildError& buildError,
                WorkBudget& workBudget, unsigned nesting)
      : env(e),
        keys(specKeys),
        error(buildError),
        budget(workBudget),
        level(nesting) {}

  std::shared_ptr<Meta> build(const Napi::Object& blockSpec) {
    if (level > MAX_SPEC_NESTING) {
      tooDeep();
      return nullptr;
    }
    if (!readHeader(blockSpec) || !addFields(blockSpec) ||
        !addMetaFields(blockSpec)) {
      return nullptr;
    }
    if (changed) meta->updateCrc();
    return meta;
  }

 private:
  // What fields and metaFields have in common.
  struct Head {
    std::string text;  // the name as JavaScript gave it, for messages
    MetaField field;
  };

  bool fail(std::string message, const char* code = INVALID_ARGUMENT) {
    error = {code, std::move(message)};
    return false;
  }
  // Answered as packing would answer it, with the line it would print.
  bool tooDeep() {
    Brindle::checkNesting(level);
    error = packFailed();
    return false;
  }
  // Whether the work is within the budget: what exceeds it makes no block.
  bool within(bool budgeted) {
    if (budgeted) return true;
    if (level > Brindle::MAX_NESTING) return tooDeep();
    return fail(BUILT_TOO_LARGE, BLOCK_TOO_LARGE);
  }

  bool readHeader(const Napi::Object& blockSpec) {
    const Napi::Value name = readProperty(env, blockSpec, "metaName");
    if (!name.IsString()) return fail("BlockSpec.metaName must be a string");
    const std::string text = textOf(name);
    if (!within(budget.takeValue(text.size()))) return false;
    meta->setName(viewOf(text));
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
               bool (SchemaBuilder::*addOne)(const Napi::Value&)) {
    return fields.IsUndefined() ||
           forEachElement(env, fields, [&](const Napi::Value& field) {
             return (this->*addOne)(field);
           });
  }

  bool readHead(const FieldWords& words, const Napi::Value& field, Head& head,
                Napi::Value* value) {
    if (!field.IsObject()) return fail(words.notObject);
    const Napi::Value name = readProperty(env, field, keys.name);
    const Napi::Value type = readProperty(env, field, keys.type);
    if (value != nullptr) *value = readProperty(env, field, keys.value);
    if (!name.IsString() || !type.IsString()) return fail(words.notStrings);
    head.text = textOf(name);
    if (!within(budget.takeValue(head.text.size()))) return false;
    head.field.name = viewOf(head.text);
    if (!parseFieldType(textOf(type), head.field.type)) {
      return fail(words.unknownType + textOf(type), UNKNOWN_FIELD_TYPE);
    }
    if (isTrue(readProperty(env, field, keys.repeated))) {
      head.field.flags = FieldFlags::REPEATED;
    }
    return readOptions(words, field, head);
  }

  bool readOptions(const FieldWords& words, const Napi::Value& field,
                   Head& head) {
    const Napi::Value options = readProperty(env, field, keys.enumOptions);
    const uint64 given =
        options.IsArray() ? options.As<Napi::Array>().Length() : 0;
    EnumMapping& entries = head.field.enumMapping;
    if (!readEnumOptions(env, keys, options, entries, budget)) {
      return within(!budget.spent()) &&
             fail(words.badOptions + quoted(head.text));
    }
    if (entries.count() != given) throw std::bad_alloc();  // one was dropped
    return true;
  }

  // A nested BlockSpec counts for a field of any type.
  bool readNested(const Napi::Value& field, Head& head) {
    const Napi::Value blockSpec = readProperty(env, field, keys.nested);
    if (blockSpec.IsObject()) {
      SchemaBuilder builder(env, keys, error, budget, level + 1);
      head.field.meta = builder.build(blockSpec.As<Napi::Object>());
      return head.field.meta != nullptr;
    }
    return head.field.type != FieldType::DATA_MAP ||
           fail("datamap field " + quoted(head.text) +
                " requires nested BlockSpec");
  }

  bool readConstant(const Napi::Value& value, Head& head) {
    MetaField& field = head.field;
    FieldValue constant;
    // Never a nested schema: a constant cannot be a record.
    if (!napiToFieldValue(env, value, field.type, field.isRepeated(), constant,
                          nullptr, budget)) {
      return within(!budget.spent()) &&
             fail("metaField " + quoted(head.text) + " value type mismatch");
    }
    field.flags = withFlags(field.flags, FieldFlags::META);
    field.value = std::make_shared<FieldValue>(std::move(constant));
    return true;
  }

  bool addField(const Napi::Value& field) {
    Head head;
    return readHead(FIELD, field, head, nullptr) && readNested(field, head) &&
           add(head, "Meta::addField failed for ");
  }

  bool addMetaField(const Napi::Value& field) {
    Head head;
    Napi::Value value;
    return readHead(META_FIELD, field, head, &value) &&
           readConstant(value, head) &&
           add(head, "Meta::addMetaField failed for ");
  }

  bool add(Head& head, const char* failed) {
    return meta->insertField(std::move(head.field), changed) ||
           fail(failed + quoted(head.text), INTERNAL);
  }

  Napi::Env env;
  const SpecKeys& keys;
  BuildError& error;
  WorkBudget& budget;
  unsigned level;
  bool changed = false;
  std::shared_ptr<Meta> meta = std::make_shared<Meta>();
};

}  // namespace

std::shared_ptr<Meta> buildMetaSchema(Napi::Env env, const SpecKeys& keys,
                                      const Napi::Object& blockSpec,
                                      BuildError& error) {
  WorkBudget budget;
  return SchemaBuilder(env, keys, error, budget, 1).build(blockSpec);
}

bool readFields(Napi::Env env, const Napi::Object& blockSpec,
                Napi::Value& array, BuildError& error) {
  return readList(env, blockSpec, "fields",
                  "BlockSpec.fields must be an array (or omitted)", array,
                  error);
}

bool readEnumOptions(Napi::Env env, const SpecKeys& keys,
                     const Napi::Value& options, EnumMapping& entries,
                     WorkBudget& budget) {
  if (isAbsent(options)) return true;
  return options.IsArray() &&
         forEachElement(env, options, [&](const Napi::Value& option) {
           return readEnumOption(env, keys, option, entries, budget);
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
