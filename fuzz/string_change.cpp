#include <algorithm>

#include "fuzz/string_run.h"

void StringRun::assign(Subject& to) {
  SafeString& s = to.string;
  StringModel& m = to.model;
  const Argument text = argument();
  const std::string bytes = script.bytes();
  switch (script.byte() % 9) {
    case 0:
      return s = text.pointer, m.set(text.model);
    case 1: {
      const size_t n = script.count();
      return s.set(text.pointer, n), m.set(text.model, n);
    }
    case 2:
      return s.setBytes(bytes.data(), bytes.size()), m.setBytes(bytes);
    case 3:
      s.setBytes(nullptr, bytes.size());
      if (bytes.empty()) return m.setBytes("");
      return void(m.ok = false);
    case 4: {
      const bool on = script.flag();
      return s = on, m.set(on ? "true" : "false");
    }
    case 5: {
      const char c = script.character();
      return s = c, m.set(std::string(1, c));
    }
    case 6: {
      const auto real = script.number<float>();
      return s = real, m.set(printed(double{real}, 6));
    }
    case 7: {
      const char* shown = text.pointer == nullptr ? "-" : text.pointer;
      s.format("%s%c.", shown, bytes[0]);
      return m.set(upToZero(text.model.value_or("-")) + bytes[0] + '.');
    }
    default:
      return exchange(to);
  }
}

// Copies and moves between the strings.
void StringRun::exchange(Subject& to) {
  Subject& from = subjects[script.byte() % subjects.size()];
  switch (script.byte() % 4) {
    case 0: {
      to.string = from.string;
      if (&to == &from) return void(to.model.ok = true);
      return to.model.setBytes(from.model.text);
    }
    case 1: {
      Subject moved = std::move(from);
      from = {};
      to = std::move(moved);
      return;
    }
    case 2: {
      Subject copy{SafeString(from.string), from.model, {}};
      copy.model.borrowed = false;
      copy.model.ok = from.model.ok || from.model.capacity != 0;
      to = std::move(copy);
      return;
    }
    default:
      const size_t size = script.count() % 80;
      const bool growable = script.flag();
      Subject made{SafeString(size, from.string, growable), {}, {}};
      made.model.capacity = size;
      made.model.growable = growable || size == 0;
      made.model.setBytes(from.model.text);
      to = std::move(made);
  }
}

void StringRun::edit(Subject& to) {
  SafeString& s = to.string;
  StringModel& m = to.model;
  const size_t start = script.count();
  const size_t n = script.count();
  switch (script.byte() % 14) {
    case 0: {
      const Argument from = argument();
      const Argument with = argument();
      return s.replace(from.pointer, with.pointer, start),
             m.replace(from.model, with.model, start);
    }
    case 1: {
      const char from = script.character();
      const char with = script.character();
      return s.replace(from, with), m.replaceEach(std::string(1, from), with);
    }
    case 2: {
      const Argument set = argument();
      const char with = script.character();
      return s.replace(set.pointer, with), m.replaceEach(set.model, with);
    }
    case 3:
      return s.trimLeft(n), m.erase(0, n);
    case 4: {
      const size_t kept = m.text.size() - std::min(n, m.text.size());
      return s.trimRight(n), m.erase(kept, SIZE_MAX);
    }
    case 5:
      return s.cut(n), m.erase(n, SIZE_MAX);
    case 6:
      return s.trimLeft(), m.trimLeft();
    case 7:
      return s.trimRight(), m.trimRight();
    case 8:
      return s.trim(), m.trimRight(), m.trimLeft();
    case 9:
      return s.toUpper(), m.flipCase(0, SIZE_MAX, 'a', 'z');
    case 10:
      return s.toLower(), m.flipCase(0, SIZE_MAX, 'A', 'Z');
    case 11:
      return s.toUpper(start, n), m.flipCase(start, n, 'a', 'z');
    case 12:
      return s.toLower(start, n), m.flipCase(start, n, 'A', 'Z');
    default:
      return s.firstWordToUpper(), m.firstWordToUpper();
  }
}

void StringRun::reshape(Subject& to) {
  SafeString& s = to.string;
  StringModel& m = to.model;
  switch (script.byte() % 7) {
    case 0: {
      const char c = script.character();
      return s.fill(c), m.fill(c);
    }
    case 1:
      return s.clear(), m.erase(0, SIZE_MAX);
    case 2: {
      const size_t size = script.byte() % 100;
      return s.resize(size), m.resize(size);
    }
    case 3: {
      const bool on = script.flag();
      return s.setCanGrow(on), m.setCanGrow(on);
    }
    case 4:
      s.validate(true);
      m.text = upToZero(m.text);
      return void(m.ok = true);
    case 5:
      return s.validate(false), void(m.ok = true);
    default:
      return writeRaw(to);
  }
}

// The whole buffer, after which the end has to be found again.
void StringRun::writeRaw(Subject& to) {
  std::string bytes = script.bytes();
  bytes.resize(to.model.capacity, 'x');
  to.model.ok = true;
  std::copy(bytes.begin(), bytes.end(), to.string.raw());
  to.string.validate(true);
  if (bytes.empty()) return;
  bytes.pop_back();
  to.model.text = upToZero(bytes);
}
