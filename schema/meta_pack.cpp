// Writes packed schema blocks. The layout stands in meta_header.h.

#include <algorithm>
#include <cstring>

#include "foundation/buffer.h"
#include "foundation/diagnostics.h"
#include "schema/checks.h"
#include "schema/meta.h"
#include "schema/meta_header.h"
#include "serialization/serializer.h"

namespace Brindle {

namespace {

// What stands beside a text: its length, a type, flags or a code.
constexpr size_t SMALL = 2 * sizeof(uint32);

bool packText(const SafeString& text, gs::container<uint8>& out) {
  const gs::ConstBuf bytes = text.bytes();
  reserveAhead(out, bytes.size + SMALL);
  return appendNumber(out, static_cast<uint32>(bytes.size)) &&
         appendToBuffer(out, bytes.data, bytes.size);
}

bool packEnumMapping(const EnumMapping& mapping, gs::container<uint8>& out) {
  bool ok = appendNumber(out, static_cast<uint32>(mapping.count()));
  for (const EnumEntry& entry : mapping) {
    ok = ok && packText(entry.name, out) && appendNumber(out, entry.value);
  }
  return ok;
}

bool packNestedMeta(const std::shared_ptr<Meta>& meta, uint8 level,
                    gs::container<uint8>& out) {
  if (!checkHasMeta(meta)) return false;
  const gs::container<uint8> nested = meta->pack(level);
  return !nested.empty() &&
         appendNumber(out, static_cast<uint32>(nested.size)) &&
         appendToBuffer(out, nested.data, nested.size);
}

bool packConstant(const MetaField& field, uint8 level,
                  gs::container<uint8>& out) {
  if (field.value &&
      Serializer::serializeField(field, *field.value, out, level)) {
    return true;
  }
  pqpr("Failed to serialize meta field (%s)", field.name.c_str());
  return false;
}

bool packDescriptor(const MetaField& field, uint8 level,
                    gs::container<uint8>& out) {
  bool ok = packText(field.name, out) && appendNumber(out, field.type) &&
            appendNumber(out, field.flags);
  if (field.type == FieldType::ENUM) {
    ok = ok && packEnumMapping(field.enumMapping, out);
  }
  if (field.type == FieldType::DATA_MAP) {
    ok = ok && packNestedMeta(field.meta, level, out);
  }
  if (field.isMeta()) ok = ok && packConstant(field, level, out);
  return ok;
}

template <class Number>
void overwrite(gs::container<uint8>& buf, size_t offset, Number value) {
  std::memcpy(buf.data + offset, &value, sizeof value);
}

}  // namespace

gs::container<uint8> Meta::pack(uint8 depth) const {
  const unsigned level = depth + 1U;
  if (!checkNesting(level)) return {};

  PackedMetaHeader header;
  header.flags = flags_;
  header.crc = crc_;
  header.fieldsCount = static_cast<uint32>(fields().count);
  header.nameLength =
      static_cast<uint8>(std::min(name_.length(), PackedMetaHeader::MAX_NAME));
  // As a rule enough for all of it.
  constexpr size_t PER_FIELD = 40;
  gs::container<uint8> out;
  out.reserve(PackedMetaHeader::SIZE + name_.length() +
              PER_FIELD * fields().count);
  bool ok = header.append(out) &&
            appendToBuffer(out, name_.bytes().data, header.nameLength);
  for (const MetaField& field : fields()) {
    ok = ok && packDescriptor(field, static_cast<uint8>(level), out);
  }
  if (!ok) return {};

  // A body above 65535 bytes does not fit: callers limit the size of blocks.
  overwrite(out, PackedMetaHeader::BODY_SIZE_OFFSET,
            static_cast<uint16>(out.size - PackedMetaHeader::SIZE));
  return out;
}

gs::container<uint8> Meta::packWithCrc(uint16* crcOut) const {
  gs::container<uint8> out = pack(0);
  if (!checkSize(out, PackedMetaHeader::SIZE)) return {};

  // The flag counts in the schema checksum too.
  const MetaFlags flagged = withFlags(flags_, MetaFlags::HAS_CRC);
  overwrite(out, PackedMetaHeader::FLAGS_OFFSET, flagged);
  overwrite(out, PackedMetaHeader::CRC_OFFSET, crcWith(flagged));
  if (!appendCrc16(out, crcOut)) return {};
  return out;
}

}  // namespace Brindle
