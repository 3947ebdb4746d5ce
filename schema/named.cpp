#include "schema/named.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <new>

namespace Brindle {

namespace {

constexpr size_t HEAD = sizeof(SafeString);

}  // namespace

// Each text stands in front of its own buffer.
struct alignas(SafeString) NamePool::Unit {
  std::byte bytes[alignof(SafeString)];
};

Name NamePool::make(const gs::ConstBuf& bytes) {
  const size_t units = (HEAD + bytes.size) / sizeof(Unit) + 1;
  if (next == nullptr || units > left) {
    left = std::max(units, std::min(nextChunk, MOST) / sizeof(Unit));
    chunk = std::make_shared<Unit[]>(left);
    next = chunk.get();
  }
  char* buffer = reinterpret_cast<char*>(next) + HEAD;
  if (bytes.size != 0) std::memcpy(buffer, bytes.data, bytes.size);
  buffer[bytes.size] = '\0';
  const auto* text =
      ::new (next) SafeString(SafeString::view(buffer, bytes.size));
  next += units;
  left -= units;
  return Name(std::shared_ptr<const SafeString>(chunk, text));
}

Name::Name(const gs::ConstBuf& bytes) : Name(NamePool(0).make(bytes)) {}

Name::Name(const SafeString& text) {
  if (text.data() != nullptr) {
    *this = Name(text.bytes());
  } else if (!text.wasLastOpSuccessful()) {
    throw std::bad_alloc();
  }
}

}  // namespace Brindle
