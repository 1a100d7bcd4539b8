// tembra-platform-check: asks the router's own libraries for all that the association service counts on.
#include <tembra/version.h>

#include <cstdio>
#include <cstring>

#include "platform_check/checks.h"

namespace {

using namespace tembra::platform_check;

constexpr int kFaults = 1;
constexpr int kUsage = 2;

constexpr const char* kHelp =
    "Usage: tembra-platform-check [--help] [--version]\n"
    "\n"
    "Calls the router's logger, device-type names, JSON functions, nvram_get and Depot library as the association\n"
    "service does, and prints a line for each: \"ok\", \"FAULT\", or \"remark\" for what works but could be better.\n"
    "It touches nothing but a folder of its own in /tmp, and writes lines to the router's log.\n"
    "\n"
    "Exit status: 0 no fault was found, 1 faults were found, 2 wrong usage, 3 it could not be checked.\n";

constexpr const char* kToBeSeen =
    "\n"
    "See for yourself, in the router's log: lines of the levels 0 to 3 with their severity (detail, the least, then\n"
    "progress, warning, error), and of the line \"control characters\" nothing red.\n";

int performAll() {
  int faults = 0;
  for (const auto& checks : {loggerChecks(), deviceTypeChecks(), jsonChecks(), settingsChecks(), depotChecks()}) {
    for (const Check& check : checks) faults += perform(check) == Verdict::kFault ? 1 : 0;
  }
  return faults;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 2 && std::strcmp(argv[1], "--help") == 0) return std::fputs(kHelp, stdout) < 0 ? 1 : 0;
  if (argc == 2 && std::strcmp(argv[1], "--version") == 0) {
    return std::puts("tembra-platform-check " TEMBRA_VERSION_TEXT) < 0 ? 1 : 0;
  }
  if (argc != 1) {
    std::fprintf(stderr, "%s", kHelp);
    return kUsage;
  }
  catchSignals();
  const int faults = performAll();
  std::printf("%s", kToBeSeen);
  if (faults == 0) {
    std::puts("No fault was found.");
    return 0;
  }
  std::printf("Faults found: %d\n", faults);
  return kFaults;
}
