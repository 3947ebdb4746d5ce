#pragma once

#include <memory>

#include "foundation/container.h"

// Refusals that the schema and the record codec have in common. Each answers
// true when all is well, else prints its line and answers false.
namespace Brindle {

class Meta;

// The deepest level of schemas, the top one being 1, and the deepest depth of
// records, the top one being 0.
constexpr unsigned MAX_NESTING = 5;

bool nestingTooDeep();  // prints the line of checkNesting; false
inline bool checkNesting(unsigned level) {
  return level <= MAX_NESTING || nestingTooDeep();
}
bool checkHasMeta(const std::shared_ptr<Meta>& meta);
bool checkSize(const gs::ConstBuf& buf, size_t minimum);
// Compares the CRC-16 of the first n bytes. REQUIRES: n <= buf.size.
bool checkCrc16(const gs::ConstBuf& buf, size_t n, uint16 expected);
bool crc16Mismatch();  // prints the line of checkCrc16; false

// Appends the CRC-16 of the whole buffer and stores it in `crcOut` unless that
// is null.
bool appendCrc16(gs::container<uint8>& buf, uint16* crcOut);

}  // namespace Brindle
