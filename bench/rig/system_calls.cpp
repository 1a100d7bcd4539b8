#include "rig/system_calls.h"

#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <iterator>
#include <map>
#include <stdexcept>

#include "rig/receiving.h"

namespace bench {
namespace {

using Calls = std::vector<long>;

// The traced process. Its own receives are none of its main thread's business, so only the library's thread has any.
[[noreturn]] void receivePasses(const Datagram& datagram, int passes) {
  ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
  raise(SIGSTOP);
  const Daemons daemons;
  LibraryReceiving library;
  drain(library, daemons, datagram, 1 + passes);
  _exit(0);
}

long enteredCall(pid_t thread) {
  __ptrace_syscall_info info{};
  ptrace(PTRACE_GET_SYSCALL_INFO, thread, sizeof info, &info);
  return info.op == PTRACE_SYSCALL_INFO_ENTRY ? static_cast<long>(info.entry.nr) : -1;
}

bool isSystemCallStop(int status) { return WSTOPSIG(status) == (SIGTRAP | 0x80); }

// Signals of the tracing itself stay with the tracer.
int signalToPassOn(int status) {
  const int signal = WSTOPSIG(status);
  return signal == SIGSTOP || signal == SIGTRAP || isSystemCallStop(status) ? 0 : signal;
}

// The calls of every thread of the child until it ends.
std::map<pid_t, Calls> trace(pid_t child) {
  std::map<pid_t, Calls> calls;
  int status = 0;
  waitpid(child, &status, 0);
  constexpr long options = PTRACE_O_TRACESYSGOOD | PTRACE_O_TRACECLONE | PTRACE_O_EXITKILL;
  if (ptrace(PTRACE_SETOPTIONS, child, nullptr, options) != 0) throw std::runtime_error("tracing is not permitted");
  ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
  for (pid_t thread = waitpid(-1, &status, __WALL); thread > 0; thread = waitpid(-1, &status, __WALL)) {
    if (WIFEXITED(status) || WIFSIGNALED(status)) {
      if (thread == child) break;
      continue;
    }
    const long call = isSystemCallStop(status) ? enteredCall(thread) : -1;
    if (call >= 0) calls[thread].push_back(call);
    ptrace(PTRACE_SYSCALL, thread, nullptr, signalToPassOn(status));
  }
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) throw std::runtime_error("the traced process has failed");
  return calls;
}

std::string nameOf(long call) {
  switch (call) {
    case SYS_recvfrom:
      return "recvfrom";
    case SYS_setsockopt:
      return "setsockopt";
    case SYS_sendto:
      return "sendto";
    default:
      return "call " + std::to_string(call);
  }
}

// One text for each stretch from behind one receive to the next.
std::vector<std::string> passesOf(const Calls& calls) {
  std::vector<std::string> passes;
  std::string pass;
  for (const long call : calls) {
    pass += (pass.empty() ? "" : " ") + nameOf(call);
    if (call != SYS_recvfrom) continue;
    passes.push_back(pass);
    pass.clear();
  }
  return passes;
}

}  // namespace

// The first receive is the beginning of the thread, the second follows the opening gate; with the first datagram the C
// library may set up a heap for the thread.
std::vector<std::string> systemCallsOfPasses(const Datagram& datagram, int passes) {
  const pid_t child = fork();
  if (child == 0) receivePasses(datagram, passes);
  for (const auto& [thread, calls] : trace(child)) {
    if (thread == child) continue;
    std::vector<std::string> all = passesOf(calls);
    constexpr std::ptrdiff_t before = 3;
    if (std::ssize(all) < before + passes) throw std::runtime_error("too few passes were seen");
    return {all.begin() + before, all.begin() + before + passes};
  }
  throw std::runtime_error("no receive thread was seen");
}

std::string necessarySystemCalls(const Datagram& datagram) {
  const std::string receive = "setsockopt recvfrom";
  return datagram.answerTo == Datagram::kNobody ? receive : "sendto " + receive;
}

}  // namespace bench
