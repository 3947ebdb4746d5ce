// Runs every file of the folders given through a target, without libFuzzer: as
// it is, cut off, and with bits changed, which targets of blocks also repair.

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

#include "fuzz/invariant.h"
#include "fuzz/mutator.h"

namespace fs = std::filesystem;

[[gnu::weak]] void repair(std::string& input);

namespace {

constexpr size_t PLACES = 100;  // that are damaged in each file

std::string current;  // the input that runs

void keepCurrent(int) { std::ofstream("failed-input") << current; }

void run(std::string input) {
  current = std::move(input);
  LLVMFuzzerTestOneInput(reinterpret_cast<const uint8*>(current.data()),
                         current.size());
}

void runDamaged(const std::string& input) {
  const size_t step = input.size() / PLACES + 1;
  for (size_t i = 0; i < input.size(); i += step) {
    run(input.substr(0, i));
    std::string flipped = input;
    flipped[i] = static_cast<char>(flipped[i] ^ 1 << i / step % 8);
    run(flipped);
    if (repair == nullptr) continue;
    repair(flipped);
    run(flipped);
  }
}

void replay(const fs::path& file) {
  std::cout << file << std::endl;  // the last one shown is the one that fails
  std::ifstream in(file, std::ios::binary);
  const std::string input(std::istreambuf_iterator<char>(in), {});
  run(input);
  runDamaged(input);
}

size_t replayFolder(const fs::path& folder) {
  size_t count = 0;
  for (const auto& entry : fs::directory_iterator(folder)) {
    replay(entry.path());
    ++count;
  }
  return count;
}

}  // namespace

int main(int argc, char** argv) {
  std::signal(SIGABRT, keepCurrent);
  for (int i = 1; i < argc; ++i) {
    if (!fs::is_directory(argv[i]) || replayFolder(argv[i]) == 0) {
      std::cerr << argv[i] << ": no inputs\n";
      return 1;
    }
  }
  return argc > 1 ? 0 : 1;
}
