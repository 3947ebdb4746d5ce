#pragma once

#include <memory>
#include <utility>

#include "schema/meta_field.h"
#include "schema/named_list.h"

namespace Brindle {

struct PackedMetaHeader;

// A schema: a named, ordered list of typed fields, a set of flags, and a 32-bit
// checksum that stands for its structure. Built by one thread, then only read.
//
// Bad content is never thrown: functions answer false, null or an empty
// container, leave the schema as it was, and where they know the cause print a
// line that says it.
// Running out of memory throws std::bad_alloc unless said otherwise.
class Meta {
 public:
  Meta() : Meta(SafeString("")) {}
  explicit Meta(const SafeString& name);
  // Copies have fields and enum entries of their own; nested schemas and
  // constants are shared.
  Meta(const Meta& other);
  Meta& operator=(const Meta& other);
  Meta(Meta&& other) noexcept = default;
  Meta& operator=(Meta&& other) noexcept = default;
  virtual ~Meta() = default;

  const SafeString& name() const { return name_; }
  const gs::LinkedList<MetaField>& fields() const { return fields_.list(); }
  // CRC-32/JAMCRC over the name, the flags and, field by field, the name, type,
  // flags, enum entries (name and code) and the 4-byte checksums of the nested
  // schema and of the constant; no lengths. A nested schema that changes later
  // does not refresh the checksum of its parents.
  uint32 crc() const { return crc_; }
  uint32 hash() const { return crc_; }
  bool flag(MetaFlags bits) const { return hasFlags(flags_, bits); }

  void setName(const SafeString& name);
  void setFlags(MetaFlags flags);  // the whole set
  // Leaves crc() as it is: the next change that refreshes it takes the flag in.
  void setFlag(MetaFlags bits, bool on);

  // The first field of that name, or null. Its name must stay as it is.
  MetaField* field(const SafeString& name);
  const MetaField* field(const SafeString& name) const;
  // False if there is no such field; else its type and whether it repeats.
  bool getFieldType(const SafeString& name,
                    std::pair<FieldType, bool>& out) const;
  // False unless there is such a field, flagged META, with a value.
  bool getMetaValue(const SafeString& name, FieldValue& out) const;

  // Appends a field. A field of that name and type that exists already only
  // gains the entries of `enumMapping` whose names it lacks; all else that is
  // given is then ignored. False, with a printed line and nothing changed, for
  // an enum field without entries, a record field without a nested schema, and
  // a name that exists with another type.
  // When there is no memory for the list node of the field, it is not added and
  // the answer is still true: look the field up to be sure. Memory for names
  // and values throws; entries are taken over as they are and need none.
  bool addField(const SafeString& name, FieldFlags flags, FieldType type,
                EnumMapping&& enumMapping, std::shared_ptr<Meta> meta,
                std::shared_ptr<FieldValue> value);
  // The same for a field without a constant.
  bool addField(const SafeString& name, FieldType type, bool repeated,
                EnumMapping&& enumMapping = {},
                std::shared_ptr<Meta> meta = nullptr);
  // The same for a constant: META is set and a copy of `value` kept.
  bool addMetaField(const SafeString& name, FieldType type,
                    const FieldValue& value, bool repeated,
                    EnumMapping&& enumMapping = {},
                    std::shared_ptr<Meta> meta = nullptr);
  // The same for many fields in a row: `changed` becomes true when the schema
  // has changed, and the checksum is left for updateCrc() to refresh. Throws
  // std::bad_alloc when there is no memory for the list node.
  bool insertField(MetaField&& given, bool& changed);
  void updateCrc();
  // Removes the field of that name, if any; the others keep their index.
  void deleteField(const SafeString& name);

  // Equal checksums; nothing else is compared.
  bool operator==(const Meta& other) const { return crc_ == other.crc_; }

  // The packed block without trailer, with the flags as they stand; empty on
  // failure. `depth` is 0 for a top-level schema. The layout stands in
  // meta_header.h.
  gs::container<uint8> pack(uint8 depth) const;
  // The packed block with HAS_CRC set (and the checksum that goes with it) and
  // the trailer, which is also stored in `crcOut` unless that is null.
  gs::container<uint8> packWithCrc(uint16* crcOut) const;

  // Reads the block at the start of `buffer`; what follows it is ignored. Null
  // on failure. `expectedCrc`, which may be null, is the CRC-16 that the block
  // has to have.
  static std::unique_ptr<Meta> unpack(const gs::ConstBuf& buffer, uint8 depth,
                                      const uint16* expectedCrc);
  // The length of the block that starts at `data`, trailer included, judged by
  // its header alone; 0 if there is none. The two trailer bytes need not lie
  // within `length`.
  static size_t getPacketMetaSize(const uint8* data, size_t length);

 private:
  Meta(SafeString&& name, MetaFlags flags)  // leaves the checksum to be made
      : name_(std::move(name)), flags_(flags), exposed_(true) {}

  // Adds or merges: `at` becomes the field of that name, null when there is no
  // memory for its list node.
  bool place(MetaField&& given, MetaField*& at, bool& changed);
  // Takes a field that has just been appended into the checksum.
  void continueCrc(const MetaField& added);
  // The checksum as it would be with these flags.
  uint32 crcWith(MetaFlags flags) const;

  static bool validateHeader(const PackedMetaHeader& header,
                             size_t bufferLength);
  static bool processCrc(const PackedMetaHeader& header,
                         const gs::ConstBuf& buffer, const uint16* expectedCrc);
  static bool extractStrFromBuffer(const gs::ConstBuf& buffer, size_t& offset,
                                   uint32 length, gs::ConstBuf& out);
  static bool processEnumField(const gs::ConstBuf& buffer, size_t& offset,
                               NamePool& names, EnumMapping& out);
  static bool processDataMapField(const gs::ConstBuf& buffer, size_t& offset,
                                  uint8 depth, std::shared_ptr<Meta>& out);
  static bool processFieldValue(MetaField& field, const gs::ConstBuf& buffer,
                                size_t& offset, uint8 depth);
  static bool unpackDescriptor(const gs::ConstBuf& buffer, size_t& offset,
                               uint8 level, NamePool& names, MetaField& out);
  bool unpackField(const gs::ConstBuf& buffer, size_t& offset, uint8 level,
                   NamePool& names);

  SafeString name_;
  uint32 crc_ = 0;
  MetaFlags flags_ = MetaFlags::NONE;
  bool exposed_ = false;  // others can change what the checksum covers
  bool stale_ = false;    // the checksum lacks a change
  NamedList<MetaField> fields_;
};

}  // namespace Brindle
