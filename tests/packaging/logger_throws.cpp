// A front end whose Logger throws at first: what it throws reaches the front end, and no half object stays behind.
#include <tembra/assoc.h>

#include <cstdio>
#include <stdexcept>

namespace {

int calls = 0;

struct NoLogger {
  int code;
};

}  // namespace

Logger* Logger::getInstance() {
  static Logger logger;
  ++calls;
  if (calls == 1) throw std::runtime_error("no log daemon");
  if (calls == 2) throw NoLogger{7};
  return &logger;
}

void Logger::Log(int, const char*) {}

int main() {
  try {
    TembraAssociation::webServerAssocInit();
  } catch (const std::exception& failure) {
    std::printf("%s\n", failure.what());
  }
  try {
    TembraAssociation::webServerAssocInit();
  } catch (const NoLogger& failure) {
    std::printf("no logger %d\n", failure.code);
  }
  std::puts(TembraAssociation::webServerAssocInit() != nullptr ? "an object" : "no object");
  return 0;
}
