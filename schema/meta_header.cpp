#include "schema/meta_header.h"

namespace Brindle {

namespace {

// The fields in the order of the layout, for writing and reading alike.
template <class Header, class Step>
bool inOrder(Header& h, Step step) {
  return step(h.magic) && step(h.version) && step(h.flags) &&
         step(h.bodySize) && step(h.crc) && step(h.fieldsCount) &&
         step(h.nameLength);
}

}  // namespace

bool PackedMetaHeader::append(gs::container<uint8>& buf) const {
  return inOrder(*this, [&](auto field) { return appendNumber(buf, field); });
}

bool PackedMetaHeader::extract(const gs::ConstBuf& buf, size_t& offset) {
  return inOrder(
      *this, [&](auto& field) { return extractNumber(buf, offset, field); });
}

}  // namespace Brindle
