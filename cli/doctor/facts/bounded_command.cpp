#include "cli/doctor/facts/bounded_command.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "platform/descriptor.h"

namespace tembra::cli::doctor {
namespace {

using std::chrono::steady_clock;

constexpr std::size_t kMostOutput = 1000;

/// A shell in a process group of its own, which ends with this object.
class Shell {
 public:
  Shell() = default;
  Shell(const Shell&) = delete;
  Shell& operator=(const Shell&) = delete;
  ~Shell() { static_cast<void>(end()); }

  int start(const std::string& command, int output) {
    posix_spawn_file_actions_t files;
    posix_spawnattr_t attributes;
    posix_spawn_file_actions_init(&files);
    posix_spawnattr_init(&attributes);
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&files, output, STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&attributes, &none);  // the program leaves its own signals to one place
    posix_spawnattr_setpgroup(&attributes, 0);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETPGROUP);
    std::string words[] = {"sh", "-c", command};
    char* arguments[] = {words[0].data(), words[1].data(), words[2].data(), nullptr};
    const int error = posix_spawn(&id_, "/bin/sh", &files, &attributes, arguments, environ);
    posix_spawn_file_actions_destroy(&files);
    posix_spawnattr_destroy(&attributes);
    if (error != 0) id_ = 0;
    return error;
  }

  /// Exit status; kills what still runs.
  int end() {
    if (id_ == 0) return 0;
    int status = 0;
    kill(-id_, SIGKILL);
    while (waitpid(id_, &status, 0) < 0 && errno == EINTR) {
    }
    id_ = 0;
    constexpr int kBySignal = 128;
    return WIFEXITED(status) ? WEXITSTATUS(status) : kBySignal + WTERMSIG(status);
  }

  /// Waits for its own end. False: it still runs.
  bool hasEnded() {
    siginfo_t info{};
    return id_ == 0 ||
           (waitid(P_PID, static_cast<id_t>(id_), &info, WEXITED | WNOHANG | WNOWAIT) == 0 && info.si_pid != 0);
  }

 private:
  pid_t id_ = 0;
};

// False when the other end is closed.
bool readMore(int descriptor, std::string& output) {
  char bytes[256];
  const ssize_t length = read(descriptor, bytes, sizeof bytes);
  if (length < 0) return errno == EAGAIN || errno == EINTR;
  if (output.size() < kMostOutput) output.append(bytes, static_cast<std::size_t>(length));
  return length > 0;
}

}  // namespace

Answer runCommand(const Context& context, const std::string& command, std::chrono::milliseconds longest) {
  constexpr std::chrono::milliseconds kBetweenLooks{20};
  int ends[2];
  if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) return {errno};
  const Descriptor reader(ends[0]);
  Descriptor writer(ends[1]);
  Shell shell;
  Answer answer{shell.start(command, writer.get())};
  if (answer.error != 0) return answer;
  writer.reset();
  const auto until = steady_clock::now() + longest;
  bool isOpen = true;
  while ((isOpen || !shell.hasEnded()) && steady_clock::now() < until) {
    context.attention.wait(isOpen ? reader.get() : Attention::kNoDescriptor, Attention::Input::kIgnored, kBetweenLooks);
    isOpen = isOpen && readMore(reader.get(), answer.output);
  }
  answer.isLate = !shell.hasEnded();
  answer.status = shell.end();
  return answer;
}

}  // namespace tembra::cli::doctor
