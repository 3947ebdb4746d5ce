#pragma once

#include <string>
#include <vector>

// What a target of blocks tells the mutator about its inputs.

// Makes checksums, sizes and counts fit the rest, as far as it can be read.
void repair(std::string& input);

// Where packed schemas stand; with what follows them, if their end is unknown.
struct Window {
  size_t begin;
  size_t end;
  bool prefixed;  // behind their length in two bytes
};
std::vector<Window> schemasIn(const std::string& input);
