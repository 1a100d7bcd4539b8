#include "support/log.h"

#include <tembra/association.h>
#include <tembra/globals.h>

#include <cstring>

namespace tembra {
namespace {

// Aside, because a piece of the line may itself stand in tempStr.
char text[sizeof tempStr];
constinit TextWriter writer(text, sizeof text);

}  // namespace

void log(const TembraAssociation& assoc, Level level, const char* text) {
  assoc.logger->Log(static_cast<int>(level), text);
}

TextWriter& line(const char* start) {
  writer = TextWriter(text, sizeof text);
  return writer << start;
}

// The Logger gets a copy: it may call the library back, which then begins the next line.
void logLine(const TembraAssociation& assoc, Level level, const TextWriter& line) {
  char copy[sizeof tempStr];
  std::memcpy(copy, line.text(), line.length() + 1);
  std::memcpy(tempStr, copy, line.length() + 1);
  log(assoc, level, copy);
}

}  // namespace tembra
