#include "support/log.h"

#include <tembra/association.h>
#include <tembra/globals.h>

#include <cstring>

namespace tembra {
namespace {

// Aside, because a piece of the line may itself stand in tempStr.
char lineText[sizeof tempStr];
constinit TextWriter writer(lineText, sizeof lineText);

}  // namespace

void log(const TembraAssociation& assoc, Level level, const char* text) {
  assoc.logger->Log(static_cast<int>(level), text);
}

TextWriter& line(std::string_view start) {
  writer = TextWriter(lineText, sizeof lineText);
  return writer << start;
}

// The Logger gets a copy: it may call the library back, which then begins the next line.
void logLine(const TembraAssociation& assoc, Level level, const TextWriter& written) {
  char copy[sizeof tempStr];
  std::memcpy(copy, written.text(), written.length() + 1);
  std::memcpy(tempStr, copy, written.length() + 1);
  log(assoc, level, copy);
}

}  // namespace tembra
