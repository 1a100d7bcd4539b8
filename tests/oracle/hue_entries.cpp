#include "hue_entries.h"

namespace oracle {

const std::vector<HueEntry>& hueEntries() {
  static const std::vector<HueEntry> entries = {
      {R"({"id":"a1b2c3fffe0a1b01","internalipaddress":"10.0.0.1"})", "a1b2c3fffe0a1b01", "10.0.0.1"},
      {R"({"internalipaddress":"192.168.1.200","id":"02a1b2fffe7a0c2f"})", "02a1b2fffe7a0c2f", "192.168.1.200"},
      {R"({"id":"a1b2c3fffe0a1b03"})", "a1b2c3fffe0a1b03", nullptr},
      {R"({"internalipaddress":"10.0.0.4"})", nullptr, "10.0.0.4"},
      {R"({"id":"ab12","internalipaddress":"10.0.0.5"})", "ab12", "10.0.0.5"},
      {R"({"name":"a bridge"})", nullptr, nullptr},
      {R"({"internalipaddress":"0123456789012345678901234567890123456789"})", nullptr,
       "0123456789012345678901234567890123456789"},
      {"no bridge", nullptr, nullptr},
      {"", nullptr, nullptr},
  };
  return entries;
}

const HueEntry* findHueEntry(const std::string& json) {
  for (const HueEntry& entry : hueEntries()) {
    if (entry.json == json) return &entry;
  }
  return nullptr;
}

}  // namespace oracle
