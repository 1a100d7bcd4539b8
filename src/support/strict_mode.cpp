#include "support/strict_mode.h"

#include <tembra/service.h>

#include <cstdlib>
#include <cstring>

namespace tembra {

std::atomic<int> strictMode{-1};

// Reads the environment once; a call of tembra_set_strict that comes in between wins. The environment of a program with
// other rights than its user's is the user's own, and has no say: there only the program itself decides.
int decideStrictMode() {
  const char* text = secure_getenv("TEMBRA_STRICT");
  const int asked = text != nullptr && std::strcmp(text, "1") == 0 ? 1 : 0;
  int current = -1;
  return strictMode.compare_exchange_strong(current, asked) ? asked : current;
}

}  // namespace tembra

int tembra_set_strict(int on) {
  const int before = tembra::isStrict() ? 1 : 0;
  return on < 0 ? before : tembra::strictMode.exchange(on != 0 ? 1 : 0);
}
