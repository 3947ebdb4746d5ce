#include <bit>
#include <cstdio>

#include "foundation/numeric.h"
#include "fuzz/definitions.h"
#include "fuzz/string_run.h"

namespace {

std::string hexOf(const std::string& bytes, bool reverse) {
  std::string out;
  for (const char byte : bytes) {
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02X", static_cast<uint8>(byte));
    out.insert(reverse ? 0 : out.size(), digits);
  }
  return out;
}

std::string binaryOf(size_t byte) {
  std::string out;
  for (int bit = 7; bit >= 0; --bit) out += (byte >> bit & 1) != 0 ? '1' : '0';
  return out;
}

}  // namespace

void StringRun::append(Subject& to) {
  SafeString& s = to.string;
  StringModel& m = to.model;
  const Argument text = argument();
  const std::string bytes = script.bytes();
  const char c = script.character();
  switch (script.byte() % 12) {
    case 0:
      return s.append(text.pointer), m.append(text.model);
    case 1: {
      const size_t n = script.count();
      return s.append(text.pointer, n), m.append(text.model, n);
    }
    case 2: {
      const Subject& other = subjects[script.byte() % subjects.size()];
      const std::string added = other.model.text;
      return s << other.string, m.append(added);
    }
    case 3:
      return s << c, m.appendBytes({c});
    case 4:
      return s.appendArray(bytes.data(), bytes.size()), m.appendArray(bytes);
    case 5:
      s.appendArray(gs::ConstBuf(nullptr, bytes.size()));
      if (bytes.empty()) return m.appendArray("");
      return void(m.ok = false);
    case 6:
      return s.forceAppend(c), m.forceAppend(c);
    case 7:
      s.appendQuoted(text.pointer);
      return m.append('"' + upToZero(text.model.value_or("")) + '"');
    case 8:
      return s.prepend(text.pointer), m.prepend(text.model);
    case 9:
      return s << text.pointer, m.append(text.model);
    case 10: {
      const std::string own = m.text;  // the whole string, zero bytes included
      return s.appendArray(s.bytes()), m.appendArray(own);
    }
    default: {
      const char* shown = text.pointer == nullptr ? "-" : text.pointer;
      s.aformat("<%s|%d>", shown, int{c});
      return m.append('<' + upToZero(text.model.value_or("-")) + '|' +
                      std::to_string(int{c}) + '>');
    }
  }
}

void StringRun::appendNumber(Subject& to) {
  SafeString& s = to.string;
  StringModel& m = to.model;
  const auto number = script.number<uint64>();
  const std::string bytes = script.bytes();
  switch (script.byte() % 8) {
    case 0:
      return s.appendNumber(number), m.append(std::to_string(number));
    case 1: {
      const auto negative = static_cast<int64>(number);
      return s.appendNumber(negative), m.append(std::to_string(negative));
    }
    case 2: {
      const auto narrow = static_cast<int8>(number);
      return s.appendNumber(narrow), m.append(std::to_string(narrow));
    }
    case 3: {
      const auto real = std::bit_cast<double>(number);
      const auto decimals = static_cast<uint8>(bytes.size());
      return s.appendFloat(real, decimals), m.append(printed(real, decimals));
    }
    case 4: {
      const auto real = std::bit_cast<float>(static_cast<uint32>(number));
      return s << real, m.append(printed(double{real}, 6));
    }
    case 5:
      return s.appendBin(number & 255), m.append(binaryOf(number & 255));
    case 6: {
      const bool own = number % 4 == 0;  // its own bytes, in either order
      const bool reverse = number % 2 == 0;
      const std::string from = own ? m.text : bytes;
      s.appendHex(own ? s.bytes().data : reference::bytesOf(bytes), from.size(),
                  reverse ? Endianness::LITTLE : Endianness::BIG);
      if (from.empty()) return void(m.ok = false);
      return m.append(hexOf(from, reverse));
    }
    default: {
      const SafeString dump = hexDump(reference::bytesOf(bytes), bytes.size());
      return s.append(dump), m.append(hexOf(bytes, false));
    }
  }
}
