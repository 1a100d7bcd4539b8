// Instructions of the library, counted by callgrind in a process of its own.
#ifndef TEMBRA_TESTS_LIMITS_CALLGRIND_H
#define TEMBRA_TESTS_LIMITS_CALLGRIND_H

#include <filesystem>
#include <map>
#include <string>

namespace limits {

/// One of callgrind's dumps: which job was done, how often, and what it took.
struct Dump {
  std::string job;
  double times = 0;
  double instructions = 0;

  /// @param library the file name of the object whose instructions count, and those of whatever it calls; but not of
  /// @param outside what is called in this object, which stands between the library and the system
  Dump(const std::filesystem::path& file, const std::string& library, const std::string& outside);
};

/// Runs a program under callgrind, with a library before all others. @return the instructions of each job that the
/// program dumps as "job*times", for each time
std::map<std::string, double> instructionsOfJobs(const std::string& program, const std::string& library);

}  // namespace limits

#endif
