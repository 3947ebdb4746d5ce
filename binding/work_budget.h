#pragma once

#include "binding/limits.h"

namespace brindle_napi {

// Bounds what one call does for an object of the caller. The parts of such an
// object may stand in it many times, so that a few lines of JavaScript describe
// more than any machine could hold; all of it would only turn out to be too
// large for a block. Each function counts steps and answers false from the call
// on that exceeds what is left.
class WorkBudget {
 public:
  // A value, field, option or schema that is kept, with so many bytes of text.
  bool takeValue(size_t textBytes = 0) {
    return take(VALUE_STEPS) && take(textBytes);
  }
  // The elements of a typed array, whose names are made before the first of
  // them can be looked at.
  bool takeElements(size_t count) {
    return count <= left / VALUE_STEPS ? take(count * VALUE_STEPS)
                                       : take(MAX_WORK_STEPS + 1);
  }
  // The name of a property that is looked at, whether it has a value or not.
  bool takeName(size_t textBytes) {
    return take(NAME_STEPS + textBytes / BYTES_PER_STEP);
  }
  bool spent() const { return exhausted; }

 private:
  static constexpr size_t VALUE_STEPS = 16;
  static constexpr size_t NAME_STEPS = 1;
  static constexpr size_t BYTES_PER_STEP = 64;

  bool take(size_t steps) {
    exhausted = exhausted || steps > left;
    if (!exhausted) left -= steps;
    return !exhausted;
  }

  size_t left = MAX_WORK_STEPS;
  bool exhausted = false;
};

}  // namespace brindle_napi
