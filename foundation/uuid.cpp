#include "foundation/uuid.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "foundation/text.h"

namespace {

// The groups of the text form: where each stands, and how many bytes it holds.
struct Group {
  size_t textOffset;
  size_t bytes;
};
constexpr Group GROUPS[] = {{0, 4}, {9, 2}, {14, 2}, {19, 2}, {24, 6}};
constexpr size_t TEXT_LENGTH = 36;

}  // namespace

Uuid::Uuid(const uint8* from) { std::copy_n(from, SIZE, bytes.data()); }

Uuid::Uuid(const char* text) {
  if (text != nullptr && gs::strnlen(text, TEXT_LENGTH + 1) == TEXT_LENGTH) {
    parse(text);
  }
}

Uuid::Uuid(const SafeString& text) {
  if (text.length() == TEXT_LENGTH) parse(text);
}

Uuid::Uuid(unsigned int number) {
  const uint32 low = number;
  std::memcpy(bytes.data(), &low, sizeof low);
}

void Uuid::parse(const char* text) {
  uint8* out = bytes.data();
  for (const Group& group : GROUPS) {
    if (!convertHexStringToArray(text + group.textOffset, out, group.bytes)) {
      return;
    }
    out += group.bytes;
  }
}

SafeString Uuid::toString() const {
  // Put together aside: all or nothing.
  char digits[TEXT_LENGTH + 1] = {};
  SafeString text(digits, sizeof digits);
  const uint8* from = bytes.data();
  for (const Group& group : GROUPS) {
    if (group.textOffset != 0) text << '-';
    text.appendHex(from, group.bytes, Endianness::BIG);
    from += group.bytes;
  }
  return {digits};
}

uint32 Uuid::toU32() const {
  uint32 low = 0;
  std::memcpy(&low, bytes.data(), sizeof low);
  return low;
}

Uuid Uuid::random() {
  Uuid made;
  for (size_t i = 0; i < SIZE; i += sizeof(uint32)) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): a worse draw, nothing more
    const uint32 drawn = static_cast<uint32>(std::rand());
    std::memcpy(made.bytes.data() + i, &drawn, sizeof drawn);
  }
  made.bytes[0] = 0xA5;
  made.bytes[1] = 0x5A;
  return made;
}
