#include "second_user.h"

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>

namespace {

constexpr unsigned kNobody = 65534;

bool becomeAnother() { return setresgid(kNobody, kNobody, kNobody) == 0 && setresuid(kNobody, kNobody, kNobody) == 0; }

}  // namespace

SecondUser::SecondUser(const std::function<void()>& act) {
  int ready[2];
  if (pipe(ready) != 0) std::perror("pipe");
  process_ = fork();
  if (process_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const char isAnother = becomeAnother() ? 1 : 0;
    act();
    if (write(ready[1], &isAnother, 1) != 1) _exit(1);
    while (true) act();
  }
  char told = 0;
  if (read(ready[0], &told, 1) != 1) std::perror("read");
  close(ready[0]);
  close(ready[1]);
  isAnother_ = told == 1;
  if (!isAnother_) std::fputs("NO SECOND USER HERE: the attacker has the test's own user\n", stderr);
}

SecondUser::~SecondUser() {
  kill(process_, SIGKILL);
  waitpid(process_, nullptr, 0);
}

bool SecondUser::once(const std::function<bool()>& act) {
  const pid_t process = fork();
  if (process == 0) {
    becomeAnother();
    _exit(act() ? 0 : 1);
  }
  int status = -1;
  waitpid(process, &status, 0);
  return status == 0;
}
