#pragma once

#include <algorithm>
#include <cmath>

#include "foundation/safe_string.h"

// Small numeric helpers. Angles are in degrees.

// The value at x of the line through (x0, y0) and (x1, y1). REQUIRES: x0 != x1.
inline double linearInt(double x, double x0, double y0, double x1, double y1) {
  return y0 + (y1 - y0) * (x - x0) / (x1 - x0);
}

inline double toRadians(double degrees) {
  return degrees * 3.141592653589793 / 180.0;
}

// The same direction within [-180, 180].
inline double normalizeAngle(double degrees) {
  return std::remainder(degrees, 360.0);
}

// The shortest turn that leads from `from` to `to`, within [-180, 180].
inline double angleDiff(double from, double to) {
  return normalizeAngle(to - from);
}

// Reverses the order of n bytes in place.
inline void swapBuffer(uint8* data, size_t n) { std::reverse(data, data + n); }

// One step of a first-order low-pass filter; alpha, 0 to 1, weighs the sample.
inline double lowPass(double previous, double sample, double alpha) {
  return previous + alpha * (sample - previous);
}

// One step of a filter that removes a constant offset; r, just below 1, is how
// slowly it forgets.
inline double dcBlock(double sample, double previousSample,
                      double previousOutput, double r) {
  return sample - previousSample + r * previousOutput;
}

inline bool isOdd(int64 n) { return n % 2 != 0; }

inline bool isEven(int64 n) { return n % 2 == 0; }

// The bytes as upper-case hex digits; empty for none.
inline SafeString hexDump(const uint8* data, size_t n) {
  return std::move(SafeString().appendHex(data, n, Endianness::BIG));
}
