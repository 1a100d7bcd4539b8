// A router's own definitions of what the stand-ins give.
#include <tembra/platform.h>

#include <cstdio>

Logger* Logger::getInstance() {
  static Logger logger;
  return &logger;
}

void Logger::Log(int level, const char* text) { std::printf("log %d %s\n", level, text); }

void DevtypeEnumToStr(DevType type, char* out) { std::sprintf(out, "own type %d", static_cast<int>(type)); }

DevType StrToDevType(const char*) { return DEVTYPE_UNKNOWN; }
