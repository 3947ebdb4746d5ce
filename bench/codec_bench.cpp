// The core by itself, on the blocks that `npm run bench` leaves in build/bench.
#include <benchmark/benchmark.h>

#include <array>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "binding/block_reader.h"
#include "foundation/crc16.h"
#include "foundation/crc32.h"
#include "foundation/sha256.h"
#include "serialization/serializer.h"

namespace {

using Brindle::Meta;

std::vector<uint8> bytesOf(const std::string& block) {
  std::ifstream file(block + ".bin", std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// Repeats `work` on the block of that name, which stands at the start of the
// name of the benchmark.
template <class Work>
void repeat(benchmark::State& state, const std::string& block, Work&& work) {
  const std::vector<uint8> bytes = bytesOf(block);
  const gs::ConstBuf given(bytes.data(), bytes.size());
  brindle_napi::Block parsed;
  if (!brindle_napi::readBlock(given, parsed)) {
    return state.SkipWithError("run in build/bench after npm run bench");
  }
  for (auto step : state) benchmark::DoNotOptimize(work(given, parsed));
  state.SetBytesProcessed(state.iterations() *
                          static_cast<int64_t>(bytes.size()));
}

void Unpack(benchmark::State& state, const std::string& block) {
  repeat(state, block, [](const gs::ConstBuf& bytes, auto&) {
    return Meta::unpack(bytes, 0, nullptr);
  });
}

void UnpackAndDecode(benchmark::State& state, const std::string& block) {
  repeat(state, block, [](const gs::ConstBuf& bytes, auto&) {
    brindle_napi::Block read;
    brindle_napi::readBlock(bytes, read);
    return read;
  });
}

void Pack(benchmark::State& state, const std::string& block) {
  repeat(state, block,
         [](auto&, const auto& parsed) { return parsed.meta->pack(0); });
}

void Serialize(benchmark::State& state, const std::string& block) {
  repeat(state, block, [](auto&, const auto& parsed) {
    return Brindle::Serializer::serialize(*parsed.meta, parsed.record, 0);
  });
}

template <class Checksum>
void overBytes(benchmark::State& state, Checksum&& checksum) {
  const std::vector<uint8> bytes(static_cast<size_t>(state.range(0)), 0x5a);
  for (auto step : state) {
    benchmark::DoNotOptimize(checksum(bytes.data(), bytes.size()));
  }
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

void Crc16(benchmark::State& state) {
  overBytes(state, [](const uint8* bytes, size_t size) {
    return CRC16::crc(bytes, size);
  });
}

void Crc32(benchmark::State& state) {
  overBytes(state, [](const uint8* bytes, size_t size) {
    return CRC32::crc(bytes, size, CRC32::POLY);
  });
}

void Sha256(benchmark::State& state) {
  overBytes(state, [](const uint8* bytes, size_t size) {
    std::array<uint8, Sha256::SIZE> digest;
    sha256(bytes, size, digest.data());
    return digest;
  });
}

BENCHMARK(Crc16)->Arg(64)->Arg(1 << 16);
BENCHMARK(Crc32)->Arg(64)->Arg(1 << 10)->Arg(1 << 16)->Arg(1 << 20);
BENCHMARK(Sha256)->Arg(64)->Arg(1 << 16);

}  // namespace

#define FOR_EACH_BLOCK(work)                       \
  BENCHMARK_CAPTURE(work, small, "small");         \
  BENCHMARK_CAPTURE(work, typical, "typical");     \
  BENCHMARK_CAPTURE(work, fields25, "fields25");   \
  BENCHMARK_CAPTURE(work, fields100, "fields100"); \
  BENCHMARK_CAPTURE(work, arrays, "arrays")

FOR_EACH_BLOCK(Unpack);
FOR_EACH_BLOCK(UnpackAndDecode);
FOR_EACH_BLOCK(Pack);
FOR_EACH_BLOCK(Serialize);
