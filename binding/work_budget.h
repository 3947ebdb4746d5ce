#pragma once

#include "binding/limits.h"

namespace brindle_napi {

// Bounds what one call does for an object of the caller. The parts of such an
// object may stand in it many times, so that a few lines of JavaScript describe
// more than any machine could hold; all of it would only turn out to be too
// large for a block. Every value, name, option and schema that is visited
// counts as one step, every byte of text as another.
class WorkBudget {
 public:
  // Counts `steps`; false from the call on that exceeds what is left.
  bool take(size_t steps) {
    exhausted = exhausted || steps > left;
    if (!exhausted) left -= steps;
    return !exhausted;
  }
  bool spent() const { return exhausted; }

 private:
  size_t left = MAX_WORK_STEPS;
  bool exhausted = false;
};

}  // namespace brindle_napi
