#include <algorithm>
#include <cstring>

#include "binding/config_hash.h"
#include "foundation/sha256.h"
#include "foundation/uuid.h"
#include "schema/meta_header.h"
#include "tests/support/every_failure.h"
#include "tests/support/sample.h"

using namespace Brindle;
using Bytes = gs::container<uint8>;

namespace {

const char LONG[] =
    "a name longer than the smallest step in which buffers grow";

std::string show(const SafeString& text) {
  EXPECT_EQ(text.c_str()[text.length()], '\0');
  return {text.c_str(), text.length()};
}
std::string show(const Bytes& bytes) { return hex(bytes); }
std::string show(const Meta& meta) {
  return std::to_string(meta.crc()) + ' ' + hex(meta.pack(0));
}
std::string show(const std::unique_ptr<Meta>& meta) {
  return meta ? show(*meta) : "";
}
std::string show(const EnumMapping& mapping) {
  std::string names;
  for (const EnumEntry& entry : mapping) names += show(entry.name) + ' ';
  return names;
}
std::string show(const DataMap& map) {
  std::string entries;
  for (const DataMap::Entry& entry : map.data()) {
    entries += show(entry.name) + ' ' + std::to_string(entry.value.crc()) + ' ';
  }
  return entries;
}

// Fails everywhere in `act` upon an object made anew, if not given otherwise.
template <class Object, class Act>
Visited check(
    const char* name, Act act, Promise promise = Promise::UNCHANGED,
    Object (*make)() = [] { return Object(); }) {
  return atEveryFailure(
      name, make, act, [](const Object& object) { return show(object); },
      promise);
}

// The same for what make() returns, which is empty when it fails.
template <class Make>
void checkBytes(const char* name, Make make) {
  check<Bytes>(name, [&](Bytes& out) { return !(out = make()).empty(); });
}

// A block in which two enum fields of one name are merged.
Bytes mergingBlock() {
  const EnumMapping added = {{LONG, 1}, {"off", 2}, {"auto", 3}};
  Meta merged("m");
  merged.addField("e", FieldType::ENUM, false, {{"off", 0}});
  Meta apart(merged);
  merged.addField("e", FieldType::ENUM, false, EnumMapping(added));
  apart.addField("E", FieldType::ENUM, false, EnumMapping(added));
  Bytes block = apart.pack(0);
  const uint32 crc = merged.crc();
  std::memcpy(block.data + PackedMetaHeader::CRC_OFFSET, &crc, sizeof crc);
  *std::find(block.begin() + PackedMetaHeader::SIZE, block.end(), 'E') = 'e';
  return block;
}

TEST(Allocation, OfStrings) {
  using S = SafeString;
  static const uint8 ten[10] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
  const struct {
    const char* name;
    void (*change)(S&);
    Promise promise = Promise::UNCHANGED;
  } acts[] = {
      {"append", [](S& s) { s.append(LONG); }},
      {"appendArray", [](S& s) { s.appendArray(LONG, 40); }},
      {"appendHex", [](S& s) { s.appendHex(ten, 10, Endianness::LITTLE); }},
      {"appendNumber", [](S& s) { s.appendNumber(INT64_MIN); }},
      {"appendQuoted", [](S& s) { s.appendQuoted(LONG); }},
      {"aformat", [](S& s) { s.aformat("%s!", LONG); }},
      {"format", [](S& s) { s.format("%s!", LONG); }},
      {"prepend", [](S& s) { s.prepend(LONG); }, Promise::VALID},
      {"prepend part", [](S& s) { s.prepend(s.data(3)); }, Promise::VALID},
      {"replace", [](S& s) { s.replace("t", LONG); }},
      {"resize", [](S& s) { s.resize(100); }},
      {"set", [](S& s) { s = LONG; }},
      {"copy", [](S& s) { s = S(cloneOf(LONG)); }},
      {"Sha256 digits", [](S& s) { s = Sha256(ten, 10).toString(); },
       Promise::VALID},
      {"Uuid digits", [](S& s) { s = Uuid(1).toString(); }, Promise::VALID}};
  for (const auto& [name, change, promise] : acts) {
    const auto act = [change = change](S& s) {
      change(s);
      return s.wasLastOpSuccessful();
    };
    check<S>(name, act, promise, [] { return S("text, 26 characters long"); });
  }
}

TEST(Allocation, OfSchemas) {
  const Meta meta = sampleMeta();
  const EnumMapping enums = {{"off", 0}, {LONG, 1}};

  std::string lines;
  const Bytes packed = meta.packWithCrc(nullptr);
  const Bytes merging = mergingBlock();
  for (const Bytes* block : {&packed, &merging}) {
    const auto unpack = [&](std::unique_ptr<Meta>& read) {
      read = Meta::unpack(*block, 0, nullptr);
      return read != nullptr;
    };
    lines += check<std::unique_ptr<Meta>>(
                 block == &packed ? "unpack" : "unpack merging", unpack)
                 .lines;
  }
  for (const std::string line : {"get field", "create field value"}) {
    EXPECT_NE(lines.find("Failed to " + line + '\n'), std::string::npos);
  }
  checkBytes("pack", [&] { return meta.pack(0); });
  checkBytes("packWithCrc", [&] { return meta.packWithCrc(nullptr); });
  check<Meta>("copy", [&](Meta& copy) { return copy = meta, true; });
  check<Meta>("setName", [&](Meta& m) { return m.setName(LONG), true; });
  check<EnumMapping>("LinkedList",
                     [&](EnumMapping& copy) { return copy = enums, true; });
}

TEST(Allocation, OfFieldsMayAddNothing) {
  const EnumMapping enums = {{"off", 0}, {LONG, 1}};
  const auto text = FieldValue(std::make_shared<SafeString>(LONG));
  const auto addEnum = [&](Meta& meta) {
    return meta.addField("e", FieldType::ENUM, false, EnumMapping(enums));
  };
  const auto withEnum = [] {
    Meta meta;
    meta.addField("e", FieldType::ENUM, false, {{"on", 1}});
    return meta;
  };
  const auto addConstant = [&](Meta& meta) {
    return meta.addMetaField(LONG, FieldType::STRING, text, false);
  };
  const auto nothing = Promise::MAY_DO_NOTHING;
  EXPECT_EQ(check<Meta>("addField", addEnum, nothing).didNothing, 2u);
  EXPECT_EQ(check<Meta>("addMetaField", addConstant, nothing).didNothing, 2u);
  // Entries that are merged keep their nodes.
  check<Meta>("addField again", addEnum, Promise::UNCHANGED, withEnum);
}

TEST(Allocation, OfRecords) {
  const Meta meta = sampleMeta();
  const DataMap map = sampleRecord();
  const auto text = FieldValue(std::make_shared<SafeString>(LONG));
  const auto packet = Serializer::serializeWithCrc(meta, map, nullptr);

  const auto deserialize = [&](DataMap& read) {
    read = Serializer::deserialize(meta, packet, 0, nullptr);
    return !read.empty();
  };
  const std::string lines = check<DataMap>("deserialize", deserialize).lines;
  const char line[] = "Failed to emplace field (f0)\n";
  EXPECT_NE(lines.find(line), std::string::npos);
  static_assert(!std::is_nothrow_copy_assignable_v<DataMap::Entry>);
  checkBytes("serialize", [&] { return Serializer::serialize(meta, map, 0); });
  checkBytes("serializeWithCrc",
             [&] { return Serializer::serializeWithCrc(meta, map, nullptr); });
  checkBytes("getPacket", [&] { return Serializer::getPacket(packet, 0); });
  check<DataMap>("copy", [&](DataMap& copy) { return copy = map, true; });
  check<DataMap>("braces", [&](DataMap& made) {
    return made = {{LONG, text}, {"", int8{1}}, {"last", text}}, true;
  });
  check<DataMap>("emplace", [&](DataMap& m) { return m.emplace(LONG, text); });
  check<DataMap>("insert_or_assign",
                 [&](DataMap& m) { return m.insert_or_assign(LONG, text); });
}

TEST(Allocation, OfHashes) {
  Meta meta;
  const auto uuid = std::make_shared<SafeString>(Uuid(1).toString());
  meta.addMetaField("__uuid", FieldType::STRING, uuid, false);
  meta.addMetaField("__instance", FieldType::UINT8, uint8{1}, false);
  const Bytes block = meta.pack(0);
  Bytes blob;
  for (int i = 0; i < 17; ++i) {  // one more than there is room for at first
    appendNumber(blob, static_cast<uint16>(block.size));
    appendToBuffer(blob, block.data, block.size);
  }
  checkBytes("calcNgConfigHash", [&] {
    Bytes digest;
    digest.assign(block.data, Sha256::SIZE);
    if (!brindle_napi::calcNgConfigHash(blob, digest.data)) digest.release();
    return digest;
  });
  EXPECT_FALSE(brindle_napi::calcNgConfigHash(blob, nullptr));
  checkBytes("Sha256", [&] {
    Bytes digest;
    digest.assign(Sha256(blob.data, blob.size).hash(), Sha256::SIZE);
    return digest;
  });
}

TEST(Allocation, OfLongLines) {
  const std::string line(600, 'x');
  const auto printed = [&](uint64 nth) {
    return outcomeOf([&] {
      alloc_fail::arm(nth, false);
      pqpr("%s", line.c_str());
      return alloc_fail::disarm() ? "cut" : "";
    });
  };
  EXPECT_EQ(printed(1), line.substr(0, 511) + "\ncut");
  EXPECT_EQ(printed(2), line + '\n');
}

}  // namespace
