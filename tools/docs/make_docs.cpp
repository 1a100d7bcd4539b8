// make-docs FOLDER: writes the pages of docs/ that are made from the code's own tables. The test suite fails when the
// pages in the project differ from what this writes; run it on docs/ then.
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
  const bool written = docs::writeWireFormats(folder / "wire-formats.md") && docs::writeEvents(folder / "events.md") &&
                       docs::writeReasons(folder / "reasons.md") && docs::writeZigbeeRules(folder / "zigbee-rules.md");
  if (!written) std::fprintf(stderr, "make-docs: cannot write to %s\n", argv[1]);
  return written ? 0 : 1;
} catch (const std::exception& error) {
  std::fprintf(stderr, "make-docs: %s\n", error.what());
  return 1;
}
