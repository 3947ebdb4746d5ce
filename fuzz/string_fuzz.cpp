// SafeString against a model, driven by a script of operations.

#include "fuzz/string_run.h"

StringRun::StringRun(Script given) : script(given) {
  subjects.push_back(grown(script.bytes()));
  const size_t fixedSize = script.count() % 80;
  subjects.push_back(sized(fixedSize, script.bytes(), false));
  const size_t borrowedSize = script.count() % 80;
  subjects.push_back(borrowing(borrowedSize, script.bytes()));
}

// Replacing a string's characters by the whole of it squares its length, so
// scripts end once one has grown long.
void StringRun::toEnd() {
  bool isLong = false;
  for (;;) {
    for (const Subject& subject : subjects) {
      requireSame(subject, subjects);
      isLong = isLong || subject.string.length() > 1000;
    }
    if (script.ended() || isLong) return;
    step(subjects[script.byte() % subjects.size()]);
  }
}

void StringRun::step(Subject& to) {
  switch (script.byte() % 5) {
    case 0:
      return append(to);
    case 1:
      return appendNumber(to);
    case 2:
      return assign(to);
    case 3:
      return edit(to);
    default:
      return reshape(to);
  }
}

Argument StringRun::argument() {
  const size_t kind = script.byte() % 6;
  if (kind == 0) return {};
  if (kind <= subjects.size()) return inside(subjects[kind - 1], script.byte());
  return apart(script.bytes());
}

extern "C" int LLVMFuzzerTestOneInput(const uint8* data, size_t size) {
  StringRun(Script(data, size)).toEnd();
  return 0;
}
