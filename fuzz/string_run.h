#pragma once

#include "fuzz/string_subject.h"

// Three strings, one that grows, one of fixed size, one in a borrowed buffer,
// and the operations on them that a script asks for.
class StringRun {
 public:
  explicit StringRun(Script given);
  void toEnd();

 private:
  void step(Subject& to);
  Argument argument();
  void append(Subject& to);
  void appendNumber(Subject& to);
  void assign(Subject& to);
  void edit(Subject& to);
  void reshape(Subject& to);
  void exchange(Subject& to);
  void writeRaw(Subject& to);

  Script script;
  std::vector<Subject> subjects;
};
