#include "support/log.h"

#include <tembra/association.h>
#include <tembra/globals.h>

#include <cstdarg>
#include <cstdio>

#include "support/text.h"

namespace tembra {

void log(const TembraAssociation& assoc, Level level, const char* text) {
  assoc.logger->Log(static_cast<int>(level), text);
}

void logLine(const TembraAssociation& assoc, Level level, const char* format, ...) {
  // Built aside, because an argument may itself stand in tempStr.
  char line[sizeof tempStr];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(line, sizeof line, format, arguments);
  va_end(arguments);
  copyText(tempStr, line);
  log(assoc, level, line);
}

}  // namespace tembra
