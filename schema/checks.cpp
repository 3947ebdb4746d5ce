#include "schema/checks.h"

#include "foundation/buffer.h"
#include "foundation/crc16.h"
#include "foundation/diagnostics.h"

namespace Brindle {

bool nestingTooDeep() {
  pqpr("Recursion limit reached");
  return false;
}

bool checkHasMeta(const std::shared_ptr<Meta>& meta) {
  if (meta) return true;
  pqpr("Meta field must have a meta");
  return false;
}

bool checkSize(const gs::ConstBuf& buf, size_t minimum) {
  if (buf.size >= minimum) return true;
  pqpr("Buffer too small");
  return false;
}

bool checkCrc16(const gs::ConstBuf& buf, size_t n, uint16 expected) {
  return CRC16::crc(buf.data, n) == expected || crc16Mismatch();
}

bool crc16Mismatch() {
  pqpr("CRC16 mismatch");
  return false;
}

bool appendCrc16(gs::container<uint8>& buf, uint16* crcOut) {
  const uint16 crc = CRC16::crc(buf.data, buf.size);
  if (!appendNumber(buf, crc)) {
    pqpr("Failed to append CRC16");
    return false;
  }
  if (crcOut != nullptr) *crcOut = crc;
  return true;
}

}  // namespace Brindle
