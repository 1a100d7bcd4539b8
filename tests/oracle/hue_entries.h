// What the Hue server's bridges say of themselves, and what becomes of it, written out by hand.
#ifndef TEMBRA_TESTS_ORACLE_HUE_ENTRIES_H
#define TEMBRA_TESTS_ORACLE_HUE_ENTRIES_H

#include <string>
#include <vector>

namespace oracle {

struct HueEntry {
  const char* json;
  const char* id;       // null: the entry has none
  const char* address;  // null: the entry has none
};

const std::vector<HueEntry>& hueEntries();

/// The entry of a text; null when it is none of those above.
const HueEntry* findHueEntry(const std::string& json);

}  // namespace oracle

#endif
