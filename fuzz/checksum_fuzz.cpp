// Checksums against their definitions, in one go and in pieces; varints,
// zigzag and buffers there and back.

#include "foundation/buffer.h"
#include "foundation/crc16.h"
#include "foundation/crc32.h"
#include "foundation/crc8.h"
#include "foundation/varint.h"
#include "foundation/xor.h"
#include "foundation/zigzag.h"
#include "fuzz/agreement.h"

namespace {

using reference::bytesOf;
using reference::reflectedCrc;

// Most significant bit first.
uint8 forwardCrc8(uint8 crc, uint8 poly, std::string_view bytes) {
  for (const char byte : bytes) {
    crc ^= static_cast<uint8>(byte);
    for (int bit = 0; bit < 8; ++bit) {
      const bool carry = (crc & 0x80) != 0;
      crc = static_cast<uint8>(crc << 1);
      if (carry) crc ^= poly;
    }
  }
  return crc;
}

// `compute(seed, data, size)` equals `expected(seed, bytes)`, also when the
// result over a first piece seeds the second.
template <class T, class Compute, class Expected>
void checkChained(std::string_view bytes, T seed, size_t split, Compute compute,
                  Expected expected) {
  const gs::container<uint8> data = exactCopy(bytes);
  const T whole = expected(seed, bytes);
  INVARIANT(compute(seed, data.data, data.size) == whole);
  const T first = compute(seed, data.data, split);
  INVARIANT(first == expected(seed, bytes.substr(0, split)));
  INVARIANT(compute(first, data.data + split, data.size - split) == whole);
  INVARIANT(compute(seed, nullptr, 0) == seed);
}

void checkCrc8(std::string_view bytes, uint8 seed, size_t split) {
  const auto rohc = [](uint8 s, std::string_view b) {
    return reflectedCrc<uint8>(s, 0xE0, b);
  };
  checkChained(
      bytes, seed, split,
      [](uint8 s, const uint8* d, size_t n) { return CRC8::crc(s, d, n); },
      rohc);
  checkChained(
      bytes, seed, split,
      [](uint8 s, const volatile uint8* d, size_t n) {
        return CRC8::crc(s, d, n);
      },
      rohc);
  checkChained(
      bytes, seed, split, CRC8::atoll,
      [](uint8 s, std::string_view b) { return forwardCrc8(s, 0xD5, b); });
  const auto inverted = static_cast<uint8>(~rohc(0xFF, bytes));
  INVARIANT(CRC8::crc(bytesOf(bytes), bytes.size()) == inverted);
  const volatile uint8* changing = bytesOf(bytes);
  INVARIANT(CRC8::crc(changing, bytes.size()) == inverted);
}

void checkCrc16(std::string_view bytes, uint16 seed, size_t split) {
  checkChained(
      bytes, seed, split,
      [](uint16 s, const uint8* d, size_t n) { return CRC16::crc(s, d, n); },
      [](uint16 s, std::string_view b) {
        return reflectedCrc<uint16>(s, 0xA001, b);
      });
  INVARIANT(CRC16::crc(bytesOf(bytes), bytes.size()) ==
            reference::crc16(bytes));
  INVARIANT(CRC16::crc(seed, nullptr, bytes.size()) == seed);
}

void checkCrc32(std::string_view bytes, uint32 seed, size_t split) {
  for (const uint32 poly : {CRC32::POLY, uint32{0x82F63B78}, seed}) {
    checkChained(
        bytes, seed, split,
        [&](uint32 s, const uint8* d, size_t n) {
          return CRC32::crc(s, d, n, poly);
        },
        [&](uint32 s, std::string_view b) { return reflectedCrc(s, poly, b); });
  }
  INVARIANT(CRC32::crc(bytesOf(bytes), bytes.size(), CRC32::POLY) ==
            reference::crc32(bytes));
}

void checkXor(std::string_view bytes) {
  uint8 all = 0;
  for (const char byte : bytes) all ^= static_cast<uint8>(byte);
  INVARIANT(XOR::xor8(bytesOf(bytes), bytes.size()) == all);
  INVARIANT(XOR::xor8(nullptr, bytes.size()) == 0);

  std::vector<uint32> words(bytes.size() / 4);
  uint32 allWords = 0;
  for (size_t i = 0; i < words.size(); ++i) {
    for (size_t byte = 0; byte < 4; ++byte) {
      words[i] |= uint32{static_cast<uint8>(bytes[4 * i + byte])} << 8 * byte;
    }
    allWords ^= words[i];
  }
  INVARIANT(XOR::xor32(words.data(), words.size()) == allWords);
  INVARIANT(XOR::xor32(nullptr, words.size()) == 0);
}

void checkVarint(uint64 value, std::string_view bytes) {
  const gs::container<uint8> encoded = Varint::encode(value);
  INVARIANT(reference::viewOf(encoded) == reference::varint(value));
  size_t consumed = 0;
  INVARIANT(Varint::decode(encoded, &consumed) == value);
  INVARIANT(consumed == encoded.size);

  std::string copy(bytes);
  reference::Reader reader(copy);
  uint64 model = 0;
  reader.varint(model);
  const gs::container<uint8> data = exactCopy(bytes);
  INVARIANT(Varint::decode(data, &consumed) == model);
  INVARIANT(consumed == reader.place());
  INVARIANT(Varint::decode(data.begin(), data.end(), nullptr) == model);
}

// Even numbers are the halves of what they stand for, odd ones the negatives.
template <class Signed>
void checkZigzag(uint64 bits) {
  using Unsigned = std::make_unsigned_t<Signed>;
  const auto folded = static_cast<Unsigned>(bits);
  const auto half = static_cast<Signed>(folded / 2);
  const auto unfolded = folded % 2 == 0 ? half : static_cast<Signed>(-half - 1);
  INVARIANT(Zigzag::decode(folded) == unfolded);
  INVARIANT(Zigzag::encode(unfolded) == folded);
}

void checkBuffer(std::string_view bytes, size_t split) {
  gs::container<uint8> joined;
  INVARIANT(Brindle::appendToBuffer(joined, bytes.data(), split));
  INVARIANT(joined.capacity == split);
  Brindle::reserveAhead(joined, split);
  INVARIANT(joined.capacity - joined.size >= split);
  INVARIANT(Brindle::appendToBuffer(joined, bytes.data() + split,
                                    bytes.size() - split));
  INVARIANT(reference::viewOf(joined) == bytes);
  INVARIANT(!Brindle::appendToBuffer(joined, nullptr, 1));

  size_t offset = split;
  gs::ConstBuf rest;
  INVARIANT(
      !Brindle::extractView(joined, offset, rest, bytes.size() - split + 1));
  INVARIANT(offset == split && rest.data == nullptr);
  INVARIANT(Brindle::extractView(joined, offset, rest, bytes.size() - split));
  INVARIANT(offset == bytes.size());
  INVARIANT(reference::viewOf(rest) == bytes.substr(split));
}

}  // namespace

// Ten bytes of seed and split, then the bytes to sum.
extern "C" int LLVMFuzzerTestOneInput(const uint8* data, size_t size) {
  uint64 seed = 0;
  uint16 place = 0;
  const gs::ConstBuf input(data, size);
  size_t offset = 0;
  if (!Brindle::extractNumber(input, offset, seed) ||
      !Brindle::extractNumber(input, offset, place)) {
    return 0;
  }
  const std::string_view bytes = reference::viewOf(input.from(offset));
  const size_t split = place % (bytes.size() + 1);
  checkCrc8(bytes, static_cast<uint8>(seed), split);
  checkCrc16(bytes, static_cast<uint16>(seed), split);
  checkCrc32(bytes, static_cast<uint32>(seed), split);
  checkXor(bytes);
  checkVarint(seed >> place % 64, bytes);
  checkZigzag<int16>(seed);
  checkZigzag<int32>(seed);
  checkZigzag<int64>(seed);
  checkBuffer(bytes, split);
  return 0;
}
