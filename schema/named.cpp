#include "schema/named.h"

#include <cstddef>
#include <cstring>

namespace Brindle {

namespace {

// The text stands in front of its own buffer.
struct alignas(SafeString) Unit {
  std::byte bytes[alignof(SafeString)];
};
constexpr size_t HEAD = sizeof(SafeString);

}  // namespace

Name::Name(const gs::ConstBuf& bytes) {
  const size_t units = (HEAD + bytes.size) / sizeof(Unit) + 1;
  std::shared_ptr<Unit[]> room = std::make_shared<Unit[]>(units);
  char* buffer = reinterpret_cast<char*>(room.get()) + HEAD;
  if (bytes.size != 0) std::memcpy(buffer, bytes.data, bytes.size);
  const SafeString* text =
      ::new (room.get()) SafeString(SafeString::view(buffer, bytes.size));
  shared = std::shared_ptr<const SafeString>(std::move(room), text);
}

Name::Name(const SafeString& text) {
  if (text.data() != nullptr) {
    *this = Name(text.bytes());
  } else if (!text.wasLastOpSuccessful()) {
    throw std::bad_alloc();
  }
}

}  // namespace Brindle
