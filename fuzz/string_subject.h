#pragma once

#include <memory>
#include <string>
#include <vector>

#include "foundation/safe_string.h"
#include "fuzz/invariant.h"
#include "fuzz/script.h"
#include "fuzz/string_model.h"

// A string under test and what it has to be.
struct Subject {
  SafeString string;
  StringModel model;
  std::unique_ptr<char[]> buffer;  // that is borrowed
};

Subject grown(const std::string& text);
Subject sized(size_t capacity, const std::string& text, bool growable);
Subject borrowing(size_t capacity, const std::string& text);

// A text argument of either side: null, apart, or inside one of the strings.
struct Argument {
  std::unique_ptr<char[]> own;
  const char* pointer = nullptr;
  OptionalText model;
};

Argument inside(const Subject& subject, size_t place);
Argument apart(const std::string& text);

// Aborts unless the string is what its model says, by itself and beside others.
void requireSame(const Subject& subject, const std::vector<Subject>& others);
