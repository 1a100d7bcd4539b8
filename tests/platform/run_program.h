// Runs a program to its end and keeps what it wrote.
#ifndef TEMBRA_TESTS_PLATFORM_RUN_PROGRAM_H
#define TEMBRA_TESTS_PLATFORM_RUN_PROGRAM_H

#include <map>
#include <string>
#include <vector>

namespace tembra::test {

struct Outcome {
  int status;  ///< exit status, or 128 and the signal that ended the program
  std::string out;
  std::string err;
};

/// `settings` are the TEMBRA_ variables that the program sees; of those in this process it sees none.
Outcome runProgram(const std::vector<std::string>& command, const std::map<std::string, std::string>& settings);

/// A path of this process's own that holds no file yet; whatever is put there goes when the process ends.
std::string freshPath(const std::string& name);

std::vector<std::string> linesOf(const std::string& text);

}  // namespace tembra::test

#endif
