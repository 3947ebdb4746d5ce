#pragma once

#include <gtest/gtest.h>

#include <new>
#include <string>

#include "tests/support/alloc_fail.h"

// What an act that reports failure promises of its object.
enum class Promise {
  UNCHANGED,       // it is as it was
  MAY_DO_NOTHING,  // and success may be reported for nothing done
  VALID,           // it can be used
};

struct Visited {
  uint64 points = 0;      // at which a failure was reached
  uint64 didNothing = 0;  // of these, reported as success
  std::string lines;      // that were printed
};

// Runs act(object) with memory running out: false and std::bad_alloc report it.
template <class Act, class Object>
bool actWithout(uint64 nth, bool lasting, Act& act, Object& object,
                bool& reached, std::string& lines) {
  bool ok = false;
  testing::internal::CaptureStdout();
  alloc_fail::arm(nth, lasting);
  try {
    ok = act(object);
  } catch (const std::bad_alloc&) {
  }
  reached = alloc_fail::disarm();
  lines += testing::internal::GetCapturedStdout();
  return ok;
}

// Lets each allocation of act(object) fail in turn, alone and with all that
// follow, on an object of its own from make(). The outcome, told by
// show(object), is that of an undisturbed act or a failure that is reported;
// repeated undisturbed, the act always has the outcome.
template <class Make, class Act, class Show>
Visited atEveryFailure(const std::string& name, Make make, Act act, Show show,
                       Promise promise = Promise::UNCHANGED) {
  auto sample = make();
  const std::string before = show(sample);
  EXPECT_TRUE(act(sample)) << name;
  const std::string after = show(sample);

  Visited visited;
  for (const bool lasting : {false, true}) {
    bool reached = true;
    for (uint64 nth = 1; reached; ++nth) {
      SCOPED_TRACE(name + (lasting ? " from " : " at ") + std::to_string(nth));
      auto object = make();
      const bool ok =
          actWithout(nth, lasting, act, object, reached, visited.lines);
      const std::string outcome = show(object);
      visited.points += reached;
      if (ok && promise == Promise::MAY_DO_NOTHING && outcome == before) {
        ++visited.didNothing;
      } else if (ok || promise != Promise::VALID) {
        EXPECT_EQ(outcome, ok ? after : before);
      }
      if (ok && outcome == after) continue;
      if (promise == Promise::VALID) object = make();
      EXPECT_TRUE(act(object));
      EXPECT_EQ(show(object), after);
    }
  }
  testing::Test::RecordProperty(name, std::to_string(visited.points));
  return visited;
}
