#pragma once

#include <cstdio>

#if defined(__GNUC__)
#define BRINDLE_PRINTF(text, args) __attribute__((format(printf, text, args)))
#else
#define BRINDLE_PRINTF(text, args)
#endif

// The diagnostic sink of the core: prints the formatted message and a line end
// to standard output. The line is put together first and written at once, after
// everything the host printed before; a full pipe is waited for, so that no
// line is lost or torn. Never throws; when memory is out, a long line is cut.
// Text that came from outside is an argument, never the format.
void pqpr(const char* format, ...) noexcept BRINDLE_PRINTF(1, 2);

// The same to any stream, without the line end.
void printTo(FILE* stream, const char* format, ...) noexcept
    BRINDLE_PRINTF(2, 3);
