#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "fuzz/definitions.h"

// A second reading and writing of docs/format.md, simple and slow. It shares no
// code with the product, so that the two have to agree for a reason.
namespace reference {

enum Type : uint8 {
  INT8,
  INT16,
  INT32,
  INT64,
  UINT8,
  UINT16,
  UINT32,
  UINT64,
  FLOAT,
  STRING,
  ENUM,
  BOOL,
  DATA_MAP,
  TYPE_COUNT
};
constexpr uint8 META = 1;
constexpr uint8 REPEATED = 2;
constexpr uint8 HAS_CRC = 1;
constexpr unsigned MAX_NESTING = 5;
constexpr size_t HEADER_SIZE = 17;

struct Schema;

// A value, or a whole record, which has the same two faces.
struct Value {
  std::string content;  // the bytes that its checksum covers
  // The encoding; none for a record that holds a constant of its schema, which
  // readers take and writers refuse.
  std::optional<std::string> encoded;
};

struct Field {
  std::string name;
  uint8 type = 0;
  uint8 flags = 0;
  std::vector<std::pair<std::string, uint8>> entries;
  std::shared_ptr<Schema> nested;
  std::optional<Value> constant;
};

struct Schema {
  std::string name;
  uint8 flags = 0;
  std::vector<Field> fields;

  uint32 crc() const;
  // Whether a nested schema asks for a trailer, which only a top one can have:
  // such a schema can be read but not read again.
  bool nestedHasCrc() const;
};

struct Entry {
  size_t field;  // its place in the schema
  Value value;
};

// Names count up to their first zero byte.
bool sameName(std::string_view a, std::string_view b);
const Field* findField(const Schema& schema, std::string_view name);

// The packed schema and the packet; none if there is a value without encoding.
std::optional<std::string> write(const Schema& schema);
std::optional<std::string> writeWithCrc(const Schema& schema);
std::optional<std::string> writeRecord(const Schema& schema,
                                       const std::vector<Entry>& record);

// Reads a window of `bytes`. Failures leave the outputs and the place
// unspecified. When repairing it writes too: headers, sizes, counts and
// checksums become those of what could be read.
class Reader {
 public:
  explicit Reader(std::string& whole, bool repairing = false)
      : Reader(whole, 0, whole.size(), repairing) {}
  Reader(std::string& whole, size_t begin, size_t stop, bool repairing = false)
      : bytes(whole), at(begin), end(stop), repair(repairing) {}

  // The top schema is of level 1, the top record of depth 0.
  bool schema(unsigned level, Schema& out, const uint16* expected = nullptr);
  // False for an empty record too.
  bool packet(const Schema& schema, unsigned depth, std::vector<Entry>& out,
              const uint16* expected = nullptr);
  bool sizedPacket(const Schema& schema, unsigned depth,
                   std::vector<Entry>& out);
  bool value(const Field& field, unsigned depth, Value& out);
  bool varint(uint64& out);  // false only if no byte is left

  size_t place() const { return at; }

 private:
  bool take(size_t n, std::string& out);
  template <class T>
  bool number(T& out);
  template <class T>
  void patch(size_t offset, T number);
  bool name(std::string& out);
  bool field(unsigned level, Schema& out);
  bool entries(Field& out);
  bool nestedSchema(unsigned level, Field& out);
  bool single(const Field& field, unsigned depth, Value& out);
  bool entry(const Schema& schema, unsigned depth, std::vector<Entry>& out);
  bool trailer(size_t start, size_t extent, bool present,
               const uint16* expected);
  void repairSize(size_t start, Schema& out);
  bool shorten(size_t start, size_t bodyEnd);

  std::string& bytes;
  size_t at;
  size_t end;
  bool repair;
};

template <class T>
bool Reader::number(T& out) {
  std::string raw;
  if (!take(sizeof(T), raw)) return false;
  out = 0;
  for (size_t i = sizeof(T); i-- != 0;) {
    out = static_cast<T>(uint64{out} << 8 | static_cast<uint8>(raw[i]));
  }
  return true;
}

template <class T>
void Reader::patch(size_t offset, T number) {
  bytes.replace(offset, sizeof(T), le(number));
}

// The faces of a record as a value.
Value asValue(const Schema& schema, const std::vector<Entry>& record);

}  // namespace reference
