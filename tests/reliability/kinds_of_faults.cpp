#include "kinds_of_faults.h"

#include <depot.h>

#include <algorithm>
#include <cerrno>
#include <stdexcept>

using kit::Call;
using kit::depotError;

namespace {

const std::vector<FaultKind> kKinds = {
    {Call::kSocket, "socket", {EMFILE, ENFILE, ENOBUFS, ENOMEM, EACCES, EAFNOSUPPORT}},
    {Call::kSetPriority, "setsockopt", {EPERM, ENOMEM, ENOPROTOOPT}},
    {Call::kSetTimeout, "setsockopt", {EDOM, ENOMEM, EBADF}},
    {Call::kBind, "bind", {EADDRINUSE, EADDRNOTAVAIL, EACCES}},
    {Call::kSendto, "sendto", {EPERM, ENOBUFS, EAGAIN, ENETUNREACH, ECONNREFUSED, EINTR, ENOMEM}},
    {Call::kRecvfrom, "recvfrom", {EAGAIN, EINTR, ENOMEM, ECONNREFUSED, EBADF, ENOTSOCK}},
    {Call::kShutdown, "shutdown", {ENOTCONN, ENOBUFS}},
    {Call::kClose, "close", {EINTR, EIO}},
    {Call::kChangeDescriptor, "fcntl", {EMFILE, EINTR, EBADF}},
    {Call::kCreateThread, "pthread_create", {EAGAIN, EPERM, ENOMEM}},
    {Call::kDetachThread, "pthread_detach", {ESRCH, EINVAL}},
    {Call::kBlockSignals, "pthread_sigmask", {EINVAL}},
    {Call::kAwaitChange, "pthread_cond_timedwait", {0, ETIMEDOUT}, false},
    {Call::kSleep, "sleep", {1, 2}},
    {Call::kPause, "nanosleep", {EINTR}},
    {Call::kPopen, "popen", {EMFILE, ENFILE, EAGAIN, ENOMEM}},
    {Call::kReadLine, "fgets", {EIO, 0}},
    {Call::kEndCommand, "pclose", {ECHILD}},
    {Call::kOpenDescriptor, "open", {EMFILE, ENFILE, EACCES, ENOENT, ENOMEM}},
    {Call::kAskForStatus, "fstat", {EIO, ENOMEM, EOVERFLOW}},
    {Call::kAskForRoom, "fstatvfs", {EIO, ENOSYS}},
    {Call::kReadAt, "pread", {EIO, EINTR}},
    {Call::kWriteAt, "pwrite", {EIO, ENOSPC}},
    {Call::kAskForFile, "stat", {EACCES, EOVERFLOW}},
    {Call::kAskForLink, "lstat", {EACCES, ENOENT, EOVERFLOW}},
    {Call::kDropName, "unlink", {EPERM, EISDIR}},
    {Call::kAskForAccess, "faccessat", {EACCES, ENOENT, ENOMEM}},
    {Call::kDeleteFile, "remove", {EACCES, EBUSY, EROFS, ENOENT}},
    {Call::kFindHost, "gethostbyname", {0}},
    {Call::kFindService, "getservbyname", {0}},
    {Call::kCopyText, "strdup", {ENOMEM}},
    {Call::kMakeObject, "new", {ENOMEM}, kit::kReplacesOperatorNew},
    {Call::kPrint, "printf", {EIO, EPIPE}},
    {Call::kComplain, "fprintf", {EBADF, EIO}},
    {Call::kComplainOfErrno, "perror", {EBADF}},
    {Call::kOpenDatabase,
     "dpopen",
     {depotError(DP_EOPEN, EMFILE), depotError(DP_EOPEN, ENFILE), depotError(DP_EOPEN, EACCES),
      depotError(DP_ELOCK, ENOLCK), depotError(DP_ELOCK, EDEADLK), depotError(DP_EALLOC, ENOMEM),
      depotError(DP_EMAP, ENOMEM), depotError(DP_ESTAT, EIO), depotError(DP_ESTAT, EOVERFLOW), DP_EBROKEN}},
    {Call::kRepairDatabase,
     "dprepair",
     {depotError(DP_EOPEN, EMFILE), depotError(DP_EWRITE, ENOSPC), depotError(DP_EALLOC, ENOMEM), DP_EBROKEN}},
    {Call::kIterateDatabase, "dpiterinit", {DP_EFATAL}},
    {Call::kNextKey, "dpiternext", {depotError(DP_EREAD, EIO), depotError(DP_EALLOC, ENOMEM), DP_EBROKEN}},
    {Call::kReadValue, "dpget", {depotError(DP_EREAD, EIO), depotError(DP_EALLOC, ENOMEM), DP_EBROKEN, DP_ENOITEM}},
    {Call::kCloseDatabase, "dpclose", {depotError(DP_ECLOSE, EIO), depotError(DP_ESYNC, EIO), DP_EMAP}},
    {Call::kDatabaseFile, "dpfdesc", {DP_EFATAL}},
};

}  // namespace

const std::vector<FaultKind>& faultKinds() { return kKinds; }

const FaultKind& kindOf(Call call) {
  const auto found =
      std::find_if(kKinds.begin(), kKinds.end(), [call](const FaultKind& kind) { return kind.call == call; });
  if (found == kKinds.end()) throw std::out_of_range("a call without a kind");
  return *found;
}

const std::set<std::string>& infallibleImports() {
  static const std::set<std::string> all = {
      // Texts and memory that is there already.
      "memchr", "memcmp", "memcpy", "memmove", "memset", "bcmp", "strchr", "strcmp", "strcpy", "strlen", "strncmp",
      "strncasecmp", "strncpy", "strnlen", "strstr", "strtok_r", "strtol", "strerror_r", "inet_addr", "inet_aton",
      "inet_ntop", "free", "_ZdlPv", "_ZdlPvm", "__ctype_b_loc", "isdigit", "putchar", "puts",
      // Clocks, locks and the thread's own variables.
      "clock_gettime", "pthread_mutex_lock", "pthread_mutex_unlock", "pthread_cond_broadcast", "pthread_cond_init",
      "pthread_condattr_init", "pthread_condattr_setclock", "sigfillset", "__errno_location", "__tls_get_addr",
      // States and texts of Depot and of streams.
      "dpecodeptr", "dperrmsg", "dpinnerhash", "dpprimenum", "geteuid", "secure_getenv", "clearerr", "ferror",
      // Objects.
      "stderr",
      // malloc is counted by the allocations, the Logger and the router's libraries have tests of their own.
      "malloc", "_Z11parse_json2PKci", "_Z15find_json_tokenP9JsonTokenPKc", "_Z12StrToDevTypePKc",
      "_Z16DevtypeEnumToStr7DevTypePc", "_ZN6Logger11getInstanceEv", "_ZN6Logger3LogEiPKc",
      // What the compiler adds.
      "_ITM_deregisterTMCloneTable", "_ITM_registerTMCloneTable", "__cxa_finalize", "__gmon_start__", "_Unwind_Resume",
      "__gxx_personality_v0", "__gcc_personality_v0", "_ZTVN10__cxxabiv117__class_type_infoE",
      "_ZTVN10__cxxabiv120__function_type_infoE", "_ZSt20__throw_system_errori", "__cxa_begin_catch", "_ZSt9terminatev",
      "__stack_chk_fail",
      // The same on other CPUs.
      "_ZdlPvj", "___tls_get_addr", "__divdi3", "__moddi3", "__getauxval", "__stack_chk_guard", "__aeabi_idivmod",
      "__aeabi_ldivmod", "__aeabi_unwind_cpp_pr0", "__aeabi_unwind_cpp_pr1", "__cxa_end_cleanup"};
  return all;
}
