// make-docs FOLDER: writes what is made from the code's own tables: pages of docs/, and tables of the Wireshark
// dissector. The test suite fails when the files in the project differ from what this writes; run it on the project's
// folder then.
#include <cstdio>
#include <exception>
#include <filesystem>

#include "docs/pages.h"

int main(int argc, char** argv) try {
  if (argc != 2) {
    std::fprintf(stderr, "usage: make-docs FOLDER\n");
    return 2;
  }
  const std::filesystem::path folder = argv[1];
  const std::filesystem::path pages = folder / "docs";
  const bool written = docs::writeWireFormats(pages / "wire-formats.md") && docs::writeEvents(pages / "events.md") &&
                       docs::writeReasons(pages / "reasons.md") && docs::writeZigbeeRules(pages / "zigbee-rules.md") &&
                       docs::writeWiresharkTables(folder / "tools/wireshark/tables.lua");
  if (!written) std::fprintf(stderr, "make-docs: cannot write to %s\n", argv[1]);
  return written ? 0 : 1;
} catch (const std::exception& error) {
  std::fprintf(stderr, "make-docs: %s\n", error.what());
  return 1;
}
