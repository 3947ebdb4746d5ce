#include "foundation/diagnostics.h"

#include <cstdarg>
#include <cstdlib>
#include <memory>

#include "foundation/types.h"

#if !defined(_WIN32)
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#endif

namespace {

#if defined(_WIN32)

void writeAll(FILE* stream, const char* text, size_t n) {
  std::fwrite(text, 1, n, stream);
  std::fflush(stream);
}

#else

// After a failed write: whether it is worth another try.
bool canRetry(int descriptor) {
  if (errno == EINTR) return true;
  if (errno != EAGAIN && errno != EWOULDBLOCK) return false;
  pollfd waiting{descriptor, POLLOUT, 0};
  return poll(&waiting, 1, -1) >= 0 || errno == EINTR;
}

// Past the buffer of stdio, which drops what a full non-blocking pipe refuses.
void writeAll(FILE* stream, const char* text, size_t n) {
  std::fflush(stream);
  const int descriptor = fileno(stream);
  while (n != 0) {
    const ssize_t written = write(descriptor, text, n);
    if (written < 0) {
      if (canRetry(descriptor)) continue;
      return;
    }
    text += written;
    n -= static_cast<size_t>(written);
  }
}

#endif

struct Free {
  void operator()(char* text) const { std::free(text); }
};

void print(FILE* stream, const char* format, va_list args, bool lineEnd) {
  constexpr size_t USUAL = 512;
  char usual[USUAL];
  va_list again;
  va_copy(again, args);
  const int measured = std::vsnprintf(usual, USUAL, format, args);
  size_t length = measured < 0 ? 0 : static_cast<size_t>(measured);

  // One byte for the terminator, which the line end then takes.
  std::unique_ptr<char, Free> large;
  if (length >= USUAL) {
    large.reset(static_cast<char*>(std::malloc(length + 1)));
    if (large) {
      std::vsnprintf(large.get(), length + 1, format, again);
    } else {
      length = USUAL - 1;
    }
  }
  va_end(again);

  char* text = large ? large.get() : usual;
  if (lineEnd) text[length++] = '\n';
  writeAll(stream, text, length);
}

}  // namespace

void pqpr(const char* format, ...) noexcept {
  va_list args;
  va_start(args, format);
  print(stdout, format, args, true);
  va_end(args);
}

void printTo(FILE* stream, const char* format, ...) noexcept {
  va_list args;
  va_start(args, format);
  print(stream, format, args, false);
  va_end(args);
}
