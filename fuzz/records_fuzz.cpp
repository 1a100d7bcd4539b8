// A well-built device database with any values, through every reader.
#include <string>

#include "support/plain_router.h"
#include "support/readers.h"
#include "support/script.h"

namespace {

// A record has a key of its own, or that of a device, of an index, or of one of the two records that are neither.
std::string readKey(fuzz::Script& script) {
  switch (script.choose(5)) {
    case 0:
      return std::to_string(script.smallNumber());
    case 1: {
      const std::string device = std::to_string(script.smallNumber());
      return device + "." + std::to_string(script.byte() % 10);
    }
    case 2:
      return "NextDevid";
    case 3:
      return "Version";
    default:
      const auto key = script.take(script.byte() % 16U);
      return {key.begin(), key.end()};
  }
}

void putRecords(fuzz::Script& script) {
  fuzz::DatabaseWriter database;
  while (!script.atEnd()) {
    const std::string key = readKey(script);
    const std::size_t length = script.word() % 600U;
    database.put(key, script.take(length));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Script script(data, size);
  fuzz::PlainRouter router;
  const fuzz::Stage stage(router);
  const unsigned char node = script.byte();
  const unsigned short address = script.word();
  putRecords(script);
  const std::size_t before = fuzz::databaseFileSize();
  fuzz::readDatabase(stage.assoc(), node, address);
  fuzz::require(fuzz::databaseFileSize() == before, "reading leaves the file's size");
  return 0;
}
