// Runs a program and keeps what it printed.
#ifndef TEMBRA_TESTS_SIM_SUPPORT_PROGRAM_H
#define TEMBRA_TESTS_SIM_SUPPORT_PROGRAM_H

#include <sys/types.h>

#include <string>
#include <vector>

namespace tembra::sim::test {

/// A started program; its output and its errors go to files of their own under /tmp.
class Program {
 public:
  explicit Program(const std::vector<std::string>& command);
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;
  /// Kills the program when it is still running.
  ~Program();

  void signal(int number) const;
  /// Waits for the end. @return the exit status, or 128 and the signal that ended it
  int wait();
  bool running();
  std::string output() const;
  std::string errors() const;

 private:
  std::string outputFile_;
  std::string errorFile_;
  pid_t process_ = -1;
  int status_ = -1;
};

struct Result {
  int status;
  std::string output;
  std::string errors;
};
Result runToEnd(const std::vector<std::string>& command);

}  // namespace tembra::sim::test

#endif
