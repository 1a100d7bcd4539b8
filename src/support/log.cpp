#include "support/log.h"

#include <cstring>

namespace tembra {

void log(const TembraAssociation& assoc, Level level, const char* text) {
  assoc.logger->Log(static_cast<int>(level), text);
}

LogLine::LogLine(const TembraAssociation& assoc, Level level, const char* start) : assoc_(assoc), level_(level) {
  line_ << start;
}

LogLine::~LogLine() {
  std::memcpy(tempStr, line_.text(), line_.length() + 1);
  log(assoc_, level_, line_.text());
}

}  // namespace tembra
