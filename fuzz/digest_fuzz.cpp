// Digests in pieces against those in one go; identifiers and their texts.

#include <algorithm>
#include <cctype>
#include <cstdio>

#include "foundation/sha256.h"
#include "foundation/uuid.h"
#include "fuzz/block_model.h"
#include "fuzz/invariant.h"

namespace {

using reference::bytesOf;

std::string hexOf(std::string_view bytes) {
  std::string out;
  for (const char byte : bytes) {
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02X", static_cast<uint8>(byte));
    out += digits;
  }
  return out;
}

void checkSha256(std::string_view bytes, size_t split) {
  uint8 digest[Sha256::SIZE];
  sha256(bytes.data(), bytes.size(), digest);
  const std::string_view expected(reinterpret_cast<char*>(digest),
                                  sizeof digest);
  Sha256 pieces;
  INVARIANT(!pieces.isValid());
  pieces.init();
  for (size_t at = 0; at < bytes.size(); at += split + 1) {
    const std::string_view piece = bytes.substr(at, split + 1);
    pieces.update(piece.data(), piece.size());
  }
  pieces.update(nullptr, 7);
  INVARIANT(!pieces.isValid());
  INVARIANT(reference::viewOf({pieces.hash(), Sha256::SIZE}) == expected);
  INVARIANT(pieces.isValid());
  pieces.update("late", 4);
  INVARIANT(pieces == Sha256(bytes.data(), bytes.size()));
  INVARIANT(pieces == Sha256(static_cast<const uint8*>(digest)));
  INVARIANT(hexOf(expected) == pieces.toString().c_str());
  pieces.clear();
  INVARIANT(!pieces.isValid() && !(pieces == Sha256::hash("", 0)));
}

void checkUuidText(const std::string& text) {
  SafeString copy(text.size() + 1, true);
  copy.setBytes(text.data(), text.size());
  const std::string model = reference::parseUuid(text);
  const Uuid uuid(copy);
  INVARIANT(reference::viewOf({uuid.data(), Uuid::SIZE}) == model);
  INVARIANT(uuid.isValid() == (model != std::string(16, '\0')));
  // A plain text ends at its first zero byte.
  const Uuid plain(copy.c_str());
  INVARIANT(reference::viewOf({plain.data(), Uuid::SIZE}) ==
            reference::parseUuid(text.substr(0, text.find('\0'))));
}

void checkUuid(std::string_view bytes) {
  checkUuidText(std::string(bytes.substr(0, 36)));
  if (bytes.size() < Uuid::SIZE) return;
  const Uuid uuid(bytesOf(bytes));
  std::string text = hexOf(bytes.substr(0, Uuid::SIZE));
  for (const size_t dash : {size_t{8}, size_t{13}, size_t{18}, size_t{23}})
    text.insert(dash, 1, '-');
  INVARIANT(text == uuid.toString().c_str());
  INVARIANT(Uuid(text.c_str()) == uuid);
  std::transform(text.begin(), text.end(), text.begin(), [](char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  });
  INVARIANT(Uuid(text.c_str()) == uuid);
  INVARIANT(Uuid(uuid.toU32()).toU32() == uuid.toU32());
  INVARIANT(reference::le(uuid.toU32()) == bytes.substr(0, 4));
  INVARIANT(!Uuid(text.substr(1).c_str()).isValid());
  const Uuid next(bytesOf(bytes.substr(bytes.size() - Uuid::SIZE)));
  INVARIANT((uuid < next) == (bytes.substr(0, Uuid::SIZE) <
                              bytes.substr(bytes.size() - Uuid::SIZE)));
}

}  // namespace

// The size of the pieces, then the bytes.
extern "C" int LLVMFuzzerTestOneInput(const uint8* data, size_t size) {
  if (size == 0) return 0;
  const std::string_view bytes = reference::viewOf({data + 1, size - 1});
  checkSha256(bytes, data[0]);
  checkUuid(bytes);
  return 0;
}
