#include "schema/meta.h"

#include "foundation/diagnostics.h"
#include "schema/checks.h"
#include "schema/checksum.h"

namespace Brindle {

namespace {

void add(Checksum& sum, const MetaField& field) {
  sum.add(field.name.text());
  sum.add(field.type);
  sum.add(field.flags);
  if (field.type == FieldType::ENUM) {
    for (const EnumEntry& entry : field.enumMapping) {
      sum.add(entry.name.text());
      sum.add(entry.value);
    }
  }
  if (field.meta) sum.add(field.meta->crc());
  if (field.value) sum.add(field.value->crc());
}

}  // namespace

Meta::Meta(const SafeString& name) : name_(cloneOf(name)) { updateCrc(); }

Meta::Meta(const Meta& other)
    : name_(cloneOf(other.name_)),
      crc_(other.crc_),
      flags_(other.flags_),
      exposed_(other.exposed_),
      stale_(other.stale_),
      fields_(other.fields_) {}

Meta& Meta::operator=(const Meta& other) {
  if (this != &other) *this = Meta(other);
  return *this;
}

void Meta::setName(const SafeString& name) {
  name_ = cloneOf(name);
  updateCrc();
}

void Meta::setFlags(MetaFlags flags) {
  flags_ = flags;
  updateCrc();
}

void Meta::setFlag(MetaFlags bits, bool on) {
  flags_ = withFlags(flags_, bits, on);
  stale_ = true;
}

MetaField* Meta::field(const SafeString& name) {
  auto* node = fields_.find(name);
  if (node == nullptr) return nullptr;
  exposed_ = true;
  return &node->value;
}

const MetaField* Meta::field(const SafeString& name) const {
  const auto* node = fields_.find(name);
  return node == nullptr ? nullptr : &node->value;
}

bool Meta::getFieldType(const SafeString& name,
                        std::pair<FieldType, bool>& out) const {
  const MetaField* found = field(name);
  if (found == nullptr) return false;
  out = {found->type, found->isRepeated()};
  return true;
}

bool Meta::getMetaValue(const SafeString& name, FieldValue& out) const {
  const MetaField* found = field(name);
  if (found == nullptr || !found->isMeta() || !found->value) return false;
  out = *found->value;
  return true;
}

bool Meta::addField(const SafeString& name, FieldFlags flags, FieldType type,
                    EnumMapping&& enumMapping, std::shared_ptr<Meta> meta,
                    std::shared_ptr<FieldValue> value) {
  MetaField given{name,
                  type,
                  0,
                  flags,
                  std::move(enumMapping),
                  std::move(meta),
                  std::move(value)};
  MetaField* at = nullptr;
  bool changed = false;
  const uint64 before = fields().count;
  const bool accepted = place(std::move(given), at, changed);
  if (fields().count != before) {
    continueCrc(*at);
  } else if (changed) {
    updateCrc();
  }
  return accepted;
}

bool Meta::insertField(MetaField&& given, bool& changed) {
  MetaField* at = nullptr;
  const bool accepted = place(std::move(given), at, changed);
  if (accepted && at == nullptr) throw std::bad_alloc();
  if (changed) stale_ = true;
  return accepted;
}

bool Meta::place(MetaField&& given, MetaField*& at, bool& changed) {
  if (given.type == FieldType::ENUM && given.enumMapping.empty()) {
    pqpr("ENUM field must have a mapping of possible values.");
    return false;
  }
  if (given.type == FieldType::DATA_MAP && !checkHasMeta(given.meta)) {
    return false;
  }
  auto* existing = fields_.find(given.name);
  if (existing == nullptr) {
    if (given.meta || given.value) exposed_ = true;
    given.index = static_cast<uint16>(fields().count);
    at = fields_.append(std::move(given));
    fields_.extendIndex();
    changed = true;
    return true;
  }
  at = &existing->value;
  if (at->type != given.type) {
    pqpr("Field already exists with different type");
    return false;
  }
  if (at->enumMapping.merge(std::move(given.enumMapping))) changed = true;
  return true;
}

bool Meta::addField(const SafeString& name, FieldType type, bool repeated,
                    EnumMapping&& enumMapping, std::shared_ptr<Meta> meta) {
  const FieldFlags flags =
      withFlags(FieldFlags::NONE, FieldFlags::REPEATED, repeated);
  return addField(name, flags, type, std::move(enumMapping), std::move(meta),
                  nullptr);
}

bool Meta::addMetaField(const SafeString& name, FieldType type,
                        const FieldValue& value, bool repeated,
                        EnumMapping&& enumMapping, std::shared_ptr<Meta> meta) {
  const FieldFlags flags =
      withFlags(FieldFlags::META, FieldFlags::REPEATED, repeated);
  return addField(name, flags, type, std::move(enumMapping), std::move(meta),
                  std::make_shared<FieldValue>(value));
}

void Meta::deleteField(const SafeString& name) {
  auto* node = fields_.find(name);
  if (node == nullptr) return;
  fields_.remove(node);
  updateCrc();
}

void Meta::continueCrc(const MetaField& added) {
  // There is nothing to continue in front of the first field.
  if (exposed_ || stale_ || fields().count == 1) return updateCrc();
  Checksum sum(crc_);
  add(sum, added);
  crc_ = sum.value();
}

void Meta::updateCrc() {
  crc_ = crcWith(flags_);
  stale_ = false;
}

uint32 Meta::crcWith(MetaFlags flags) const {
  Checksum sum;
  sum.add(name_);
  sum.add(flags);
  for (const MetaField& field : fields()) add(sum, field);
  return sum.value();
}

}  // namespace Brindle
