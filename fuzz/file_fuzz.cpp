// A damaged device database through every reader.
#include <cstring>
#include <vector>

#include "support/plain_router.h"
#include "support/readers.h"
#include "support/script.h"

namespace {

using fuzz::Bytes;

constexpr std::size_t kFileSizeOffset = 24;                      // in the header of a Depot file
constexpr std::size_t kRepairedFileSize = std::size_t{2} << 20;  // buckets for a megabyte, rounded up, and records

// A wrong file size in the header ends the opening; with the right one the damage behind it is reached.
void writeFile(Bytes content, bool rightSize) {
  std::vector<std::uint8_t> file(content.begin(), content.end());
  const int size = static_cast<int>(file.size());
  if (rightSize && file.size() >= kFileSizeOffset + sizeof size) {
    std::memcpy(file.data() + kFileSizeOffset, &size, sizeof size);
  }
  fuzz::writeDatabaseFile(file);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Script script(data, size);
  fuzz::PlainRouter router;
  const fuzz::Stage stage(router);
  const bool rightSize = script.byte() % 8 != 0;
  const unsigned char node = script.byte();
  const unsigned short address = script.word();
  writeFile(script.takeRest(), rightSize);
  fuzz::readDatabase(stage.assoc(), node, address);
  fuzz::require(fuzz::databaseFileSize() <= kRepairedFileSize, "a repair makes no huge file");
  return 0;
}
