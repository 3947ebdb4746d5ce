// Does one piece of the core's work on one block so many times, for callgrind
// to count the instructions: count_driver <unpack|read|pack|serialize> <block>
// <times>. The count of 101 runs less that of one, divided by 100, is what one
// run takes once everything is loaded.
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "binding/block_reader.h"
#include "serialization/serializer.h"

namespace {

using Brindle::Meta;

std::vector<uint8> contentOf(const char* path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// Exits when the work cannot be done, so that no failure is ever counted.
void require(bool done) {
  if (!done) std::exit(1);
}

void repeat(const std::string& work, const gs::ConstBuf& bytes, int times) {
  brindle_napi::Block given;
  require(brindle_napi::readBlock(bytes, given) && !given.record.empty());
  const std::map<std::string, std::function<bool()>> works = {
      {"unpack", [&] { return Meta::unpack(bytes, 0, nullptr) != nullptr; }},
      {"read",
       [&] {
         brindle_napi::Block block;
         return brindle_napi::readBlock(bytes, block);
       }},
      {"pack", [&] { return !given.meta->pack(0).empty(); }},
      {"serialize", [&] {
         return !Brindle::Serializer::serialize(*given.meta, given.record, 0)
                     .empty();
       }}};
  const auto found = works.find(work);
  require(found != works.end());
  for (int i = 0; i < times; ++i) require(found->second());
}

}  // namespace

int main(int count, char** arguments) {
  require(count == 4);
  const std::vector<uint8> bytes = contentOf(arguments[2]);
  repeat(arguments[1], {bytes.data(), bytes.size()}, std::atoi(arguments[3]));
}
