// The smallest front end, with the library, with the kit on it or, to compare, without both. Without an argument it
// ends at once; with one it opens the connection and prints the kilobytes of memory that it shares with nobody.
#include <tembra/platform.h>

#include <cstdio>
#include <fstream>
#include <string>
#ifdef TEMBRA_WITH_LIBRARY
#include <tembra/assoc.h>
#endif
#ifdef TEMBRA_WITH_KIT
#include <tembra/assoc.h>
#include <tembra/frontend.h>
#endif

namespace {

#ifdef TEMBRA_WITH_KIT
// As after some hours: the kernel gives the recorder's pages when they are first written to.
void fillFlightRecorder() {
  const std::string line(500, 'x');
  for (std::size_t bytes = 0; bytes < std::size_t{2} * TEMBRA_HISTORY_SIZE; bytes += line.size())
    tembra_frontend_log(3, line.c_str());
}
#endif

bool open() {
#ifdef TEMBRA_WITH_LIBRARY
  return TembraAssociation::LCDAssocInit()->checkAssocConnection() == 0;
#elif defined TEMBRA_WITH_KIT
  fillFlightRecorder();
  // The kit opens its connection for an operation only: here it stands beside one that is open.
  return tembra_frontend_new(nullptr) != nullptr && TembraAssociation::LCDAssocInit()->checkAssocConnection() == 0;
#else
  return Logger::getInstance() != nullptr;
#endif
}

long privateKiB() {
  std::ifstream maps("/proc/self/smaps");
  long total = 0;
  for (std::string line; std::getline(maps, line);) {
    long kilobytes = 0;
    if (std::sscanf(line.c_str(), "Private_Dirty: %ld kB", &kilobytes) == 1) total += kilobytes;
  }
  return total;
}

}  // namespace

int main(int argc, char** /*argv*/) {
  if (argc == 1) return 0;
  if (!open()) return 1;
  std::printf("%ld\n", privateKiB());
  return 0;
}
