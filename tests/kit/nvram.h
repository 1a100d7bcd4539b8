// The router's `nvram_get` command, as the test wants it.
#ifndef TEMBRA_TESTS_KIT_NVRAM_H
#define TEMBRA_TESTS_KIT_NVRAM_H

#include <string>

namespace kit {

/// Puts a folder of our own first in PATH. Without a script the command is missing.
class Nvram {
 public:
  Nvram();

  /// The body of the shell script, for instance "echo 3".
  void answerWith(const std::string& script);
  void remove();

 private:
  std::string path_;
};

}  // namespace kit

#endif
