#include "foundation/crc16.h"
#include "schema/schema_scan.h"
#include "tests/support/sample.h"

using namespace Brindle;

// Two fields and a constant: e, off = 0 or on = 1; d, a record; k = 300.
static Meta smallMeta() {
  Meta meta("m");
  meta.addField("e", FieldType::ENUM, false, {{"off", 0}, {"on", 1}});
  meta.addField("d", FieldType::DATA_MAP, false, {}, innerMeta());
  meta.addMetaField("k", FieldType::UINT16, uint16{300}, false);
  return meta;
}

// Its block, by hand; checksums from Python's zlib.crc32(...) ^ 0xFFFFFFFF:
//   inner  "in" 00 "n" 04 00 -> 61E1EACC, the constant 2C 01 -> F010B638
//   outer  "m" flags "e" 0A 00 "off" 00 "on" 01 "d" 0C 00 CC EA E1 61
//          "k" 05 01 38 B6 10 F0 -> 6B3586DB, with flags 01 CEBE16D5
const std::string BODY =
    "6D 01 00 00 00 65 0A 00 02 00 00 00 03 00 00 00 6F 66 66 00 "
    "02 00 00 00 6F 6E 01 01 00 00 00 64 0C 00 1A 00 00 00 "
    "4D 48 43 53 0A 00 09 00 CC EA E1 61 01 00 00 00 02 69 6E "
    "01 00 00 00 6E 04 00 01 00 00 00 6B 05 01 AC 02";
const std::string PLAIN =
    "4D 48 43 53 0A 00 49 00 DB 86 35 6B 03 00 00 00 01 " + BODY;
const std::string FLAGGED =
    "4D 48 43 53 0A 01 49 00 D5 16 BE CE 03 00 00 00 01 " + BODY + " 49 C6";

// A block without a name; mostly the checksum does not matter.
static std::string block(const std::string& body, uint32 count, char flags = 0,
                         uint32 crc = 0) {
  return std::string("MHCS\x0A") + flags + le(body.size(), 2) + le(crc, 4) +
         le(count, 4) + '\0' + body;
}
static std::string sized(const std::string& text) {
  return le(text.size(), 4) + text;
}
static std::string field(uint64 type, uint64 flags,
                         const std::string& rest = "") {
  return sized("f") + le(type, 1) + le(flags, 1) + rest;
}

// What is printed, then "ok" when there is a result. A scan prints nothing, and
// accepts nothing else.
static std::string unpacked(const std::string& in,
                            const uint16* expected = nullptr) {
  return outcomeOf([&] {
    const bool scanned = !expected && scanSchema(bytes(in), nullptr);
    const bool ok = Meta::unpack(bytes(in), 0, expected) != nullptr;
    EXPECT_TRUE(ok || !scanned) << hex(view(in));
    return ok ? "ok" : "";
  });
}
static std::string repacked(const Meta& meta) {
  return outcomeOf([&] {
    const auto packed = meta.pack(0);
    return packed.size != 0 && Meta::unpack(packed, 0, nullptr) ? "ok" : "";
  });
}
static std::string measured(const std::string& in) {
  const auto exact = bytes(in);
  return outcomeOf([&] {
    return std::to_string(Meta::getPacketMetaSize(exact.data, exact.size));
  });
}

TEST(MetaPack, WritesAndReadsTheFormatAndChecksAnExpectedCrc) {
  const Meta meta = smallMeta();
  uint16 crc = 0;
  EXPECT_EQ(hex(meta.packWithCrc(&crc)), FLAGGED);
  EXPECT_EQ(crc, 0xC649);
  EXPECT_EQ(hex(meta.pack(0)), PLAIN);  // packWithCrc changed nothing
  for (const std::string& whole : {PLAIN, FLAGGED}) {
    const auto read = Meta::unpack(bytes(fromHex(whole + " 55")), 0, nullptr);
    ASSERT_NE(read, nullptr);
    // The flag stays, but pack() writes no trailer.
    EXPECT_EQ(hex(read->pack(0)), whole.substr(0, PLAIN.size()));
  }
  const uint16 ofPlain = 0xF1A5;  // computed bit by bit
  std::string flagged = fromHex(FLAGGED);
  EXPECT_EQ(unpacked(fromHex(PLAIN), &ofPlain), "ok");
  EXPECT_EQ(unpacked(fromHex(PLAIN), &crc), "CRC16 mismatch\n");
  EXPECT_EQ(unpacked(flagged, &crc), "ok");
  flagged[20] ^= 1;  // found only after the trailer has been compared
  EXPECT_EQ(unpacked(flagged, &crc), "CRC16 mismatch\n");
  EXPECT_EQ(unpacked(flagged, &ofPlain),
            "Meta has CRC, but input CRC16 mismatch\n");
}

TEST(MetaPack, NamesCountsAndNestingEndAtTheirLimits) {
  for (size_t n : {254u, 255u}) {
    const std::string outcome = n == 254 ? "ok" : "Name is very long 255\n";
    const SafeString name(std::string(n, 'n').c_str());
    // A schema's name is cut, so the checksum no longer fits.
    Meta meta(name);
    EXPECT_EQ(repacked(meta), n == 254 ? "ok" : "CRC mismatch\n");
    meta = Meta();
    meta.addField("e", FieldType::ENUM, false, {{name, 1}});
    EXPECT_EQ(repacked(meta), outcome);
    meta = Meta();
    meta.addField(name, FieldType::INT8, false);
    EXPECT_EQ(repacked(meta), outcome);
  }
  Meta many;
  for (int i = 1; i <= 101; ++i) {
    many.addField(SafeString().appendNumber(i), FieldType::INT8, false);
    EXPECT_EQ(repacked(many), i <= 100 ? "ok" : "Wrong fields count 101\n");
  }
  auto nested = innerMeta();
  for (int levels = 2; levels <= 6; ++levels) {
    nested = innerMeta(nested);
    EXPECT_EQ(repacked(*nested),
              levels < 6 ? "ok" : "Recursion limit reached\n");
    const auto withCrc = [&] {
      return nested->packWithCrc(nullptr).empty() ? "" : "ok";
    };
    EXPECT_EQ(
        outcomeOf(withCrc),
        levels < 6 ? "ok" : "Recursion limit reached\nBuffer too small\n");
  }
}

TEST(MetaPack, SaysWhyItCannotWrite) {
  Meta meta = smallMeta();
  meta.field("k")->value = std::make_shared<FieldValue>(int16{300});
  EXPECT_EQ(repacked(meta), "Failed to serialize meta field (k)\n");
  meta.field("k")->value.reset();
  EXPECT_EQ(repacked(meta), "Failed to serialize meta field (k)\n");
  meta.field("d")->meta.reset();
  EXPECT_EQ(outcomeOf([&] { return hex(meta.packWithCrc(nullptr)); }),
            "Meta field must have a meta\nBuffer too small\n");
}

TEST(MetaPack, ChecksTheHeaderInOrder) {
  std::string in = "xxxxx" + block("abc", 999).substr(5, 14);
  EXPECT_EQ(unpacked(in.substr(0, 16)), "Buffer too small for meta header\n");
  EXPECT_EQ(measured(in.substr(0, 16)), "0");
  EXPECT_EQ(unpacked(in), "Invalid meta size\n");
  EXPECT_EQ(measured(in), "Invalid meta size\n0");
  in += 'd';
  EXPECT_EQ(unpacked(in), "Invalid magic number in meta header\n");
  in.replace(0, 4, "MHCS");
  EXPECT_EQ(unpacked(in), "Unsupported meta version\n");
  in[4] = 10;
  EXPECT_EQ(unpacked(in), "Wrong fields count 999\n");
  EXPECT_EQ(measured(in + 'x'), "20");
  in[5] = 3;
  EXPECT_EQ(measured(in), "22");  // the trailer may be missing
}

TEST(MetaPack, SaysWhyItCannotRead) {
  const std::string failed = "Failed to deserialize field\n";
  const std::string inner = "Failed to unpack meta\n";
  const std::string most(4, '\xFF');  // 2^32 - 1
  // A flag that promises a trailer, and that trailer.
  const std::string flagged = block("", 0, 1);
  const std::string trailer = le(CRC16::crc(view(flagged).data, 17), 2);
  std::string deep = block("", 0);
  for (int i = 0; i < 5; ++i) deep = block(field(12, 0, sized(deep)), 1);
  const std::pair<std::string, std::string> cases[] = {
      {block("", 1), ""},
      {block("", 0).replace(16, 1, "\xFF"), "Name is very long 255\n"},
      {block(most, 1), "Name is very long 4294967295\n"},
      {block(field(10, 0, most + sized("x") + "\1"), 1), ""},
      {block(field(0, 0) + field(4, 0), 2),
       "Field already exists with different type\nFailed to add field\n"},
      {block(field(12, 0, le(0, 4)), 1), ""},
      {block(field(12, 0, most + "abc"), 1), "Meta size is too large\n"},
      // What stands behind the nested schema must not serve as its trailer.
      {block(field(12, 0, sized(flagged) + trailer), 1),
       "CRC16 mismatch\n" + inner},
      {deep,
       "Recursion limit reached\n" + inner + inner + inner + inner + inner},
      {block(field(8, 1, "abc"), 1), failed + failed},
      {block(field(13, 1), 1), "Unsupported field type\n" + failed + failed},
      // An unknown type is carried.
      {block(field(13, 4), 1, 0, jam(fromHex("00 66 0D 04"))), "ok"}};
  for (const auto& [in, outcome] : cases) {
    EXPECT_EQ(unpacked(in), outcome) << hex(view(in));
  }
}

// Equal names merge into one field; equal entries of one field stay.
TEST(SchemaScan, AcceptsTheUsualAndShowsItsConstants) {
  for (const std::string& whole : {fromHex(PLAIN), fromHex(FLAGGED)}) {
    std::string shown;
    const auto visit = [&](const gs::ConstBuf& name, const FieldValue& value) {
      shown += hex(name) + '=' + std::to_string(*value.get<uint16>());
    };
    EXPECT_TRUE(scanSchema(bytes(whole + 'U'), visit));
    EXPECT_EQ(shown, "6B=300");
    for (size_t n = 0; n < whole.size(); ++n) {
      EXPECT_FALSE(scanSchema(bytes(whole.substr(0, n)), nullptr)) << n;
    }
  }
}

TEST(MetaPack, KeepsDuplicateEntriesAndMergesDuplicateFields) {
  const std::string x1 = sized("x") + '\1';
  const std::string once = field(10, 0, le(1, 4) + x1);
  const std::string twice = field(10, 0, le(2, 4) + x1 + sized("x") + '\2');
  const uint32 merged = jam(fromHex("00 66 0A 00 78 01"));
  const uint32 kept = jam(fromHex("00 66 0A 00 78 01 78 02"));
  EXPECT_EQ(unpacked(block(once + twice, 2, 0, merged)), "ok");
  EXPECT_EQ(unpacked(block(twice, 1, 0, kept)), "ok");
}
