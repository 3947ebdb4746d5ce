// Runs every file of the folders given through a target, without libFuzzer.

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

#include "fuzz/invariant.h"

namespace fs = std::filesystem;

namespace {

void replay(const fs::path& file) {
  std::cout << file << std::endl;  // the last one shown is the one that fails
  std::ifstream in(file, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(in), {}};
  LLVMFuzzerTestOneInput(reinterpret_cast<const uint8*>(bytes.data()),
                         bytes.size());
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
  for (int i = 1; i < argc; ++i) {
    if (!fs::is_directory(argv[i]) || replayFolder(argv[i]) == 0) {
      std::cerr << argv[i] << ": no inputs\n";
      return 1;
    }
  }
  return argc > 1 ? 0 : 1;
}
