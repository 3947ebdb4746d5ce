#pragma once

#include <cstdio>
#include <cstdlib>

#include "foundation/types.h"

// What every target defines, called by libFuzzer or by replay_main.cpp.
extern "C" int LLVMFuzzerTestOneInput(const uint8* data, size_t size);

// Ends the process, as a finding, unless `condition` holds.
#define INVARIANT(condition)                                          \
  do {                                                                \
    if (!(condition)) {                                               \
      std::fprintf(stderr, "%s:%d: broken: %s\n", __FILE__, __LINE__, \
                   #condition);                                       \
      std::abort();                                                   \
    }                                                                 \
  } while (false)
