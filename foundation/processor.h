#pragma once

// Marks functions for 64-bit Arm with instructions that not each one has, where
// the compiler can make them. On macOS each one has them all.
#if defined(__AARCH64EL__)
#if defined(__APPLE__)
#define BRINDLE_ARM_TARGET(features)
#elif defined(__linux__) && (!defined(__clang__) || __clang_major__ > 15)
#define BRINDLE_ARM_TARGET(features) __attribute__((target(features)))
#endif
#endif

// What the processor that runs this can do beyond what every one of its kind
// can. False where there is no code that would make use of it.
namespace gs {

// Multiplies polynomials over GF(2). Cheap enough to be asked for every byte.
#if defined(__x86_64__)
inline bool multipliesCarryless() { return __builtin_cpu_supports("pclmul"); }
#else
bool multipliesCarryless();
#endif

bool hasSha256();  // has instructions for SHA-256
#ifdef BRINDLE_ARM_TARGET
bool hasCrc32();  // has instructions for the CRC-32 of 0x04C11DB7
#endif

}  // namespace gs
