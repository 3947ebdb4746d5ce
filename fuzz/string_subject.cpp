#include "fuzz/string_subject.h"

#include <algorithm>

#include "fuzz/definitions.h"

namespace {

void compare(const Subject& subject, const Argument& other) {
  const SafeString& s = subject.string;
  const bool comparable = subject.model.capacity != 0 && other.model;
  const std::string mine = upToZero(subject.model.text);
  const std::string theirs = upToZero(other.model.value_or(""));
  INVARIANT(s.isEqual(other.pointer) == (comparable && mine == theirs));
  INVARIANT((s == other.pointer) == (comparable && mine == theirs));
  INVARIANT((s < other.pointer) == (comparable && mine < theirs));
  INVARIANT((s > other.pointer) == (comparable && mine > theirs));
  INVARIANT(s.startsWith(other.pointer) ==
            (comparable && mine.starts_with(theirs)));
  INVARIANT(s.endsWith(other.pointer) ==
            (comparable && mine.ends_with(theirs)));
}

}  // namespace

Subject grown(const std::string& text) {
  Subject made{SafeString(text.c_str()), {}, {}};
  made.model.set(text);
  return made;
}

Subject sized(size_t capacity, const std::string& text, bool growable) {
  Subject made{SafeString(capacity, text.c_str(), growable), {}, {}};
  made.model.capacity = capacity;
  made.model.growable = growable || capacity == 0;
  made.model.set(text);
  return made;
}

Subject borrowing(size_t capacity, const std::string& text) {
  Subject made{{}, {}, std::make_unique<char[]>(capacity)};
  std::copy_n(text.c_str(), std::min(capacity, text.size()), &made.buffer[0]);
  made.string = SafeString(made.buffer.get(), capacity);
  made.model.growable = false;
  made.model.borrowed = capacity != 0;
  made.model.capacity = capacity;
  if (capacity != 0) made.model.text = upToZero(text.substr(0, capacity - 1));
  return made;
}

Argument inside(const Subject& subject, size_t place) {
  place %= subject.model.text.size() + 1;
  return {{}, subject.string.c_str() + place, subject.model.text.substr(place)};
}

Argument apart(const std::string& text) {
  Argument made{std::make_unique<char[]>(text.size() + 1), {}, text};
  std::copy_n(text.c_str(), text.size() + 1, &made.own[0]);
  made.pointer = made.own.get();
  return made;
}

void requireSame(const Subject& subject, const std::vector<Subject>& others) {
  const SafeString& s = subject.string;
  const StringModel& m = subject.model;
  INVARIANT(s.length() == m.text.size());
  INVARIANT(s.size() == m.capacity);
  INVARIANT(s.isEmpty() == m.text.empty());
  INVARIANT(s.wasLastOpSuccessful() == m.ok);
  INVARIANT(s.c_str()[s.length()] == '\0');
  INVARIANT(reference::viewOf(s.bytes()) == m.text);
  INVARIANT(m.capacity == 0 || m.text.size() < m.capacity);
  INVARIANT((s.data() == nullptr) == (m.capacity == 0));
  INVARIANT(s.data(m.capacity + 1) == nullptr);
  INVARIANT(m.capacity == 0 || s.data(1) == s.c_str() + 1);
  INVARIANT(!m.borrowed || s.c_str() == subject.buffer.get());
  for (const Subject& other : others) compare(subject, inside(other, 0));
  compare(subject, {});
  const size_t length = m.text.size();
  compare(subject, inside(subject, length / 2));
  compare(subject, apart(m.text.substr(0, length / 2)));
}
