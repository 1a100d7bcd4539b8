#include "kinds_of_faults.h"

#include <depot.h>

#include <algorithm>
#include <cerrno>
#include <stdexcept>

using kit::Call;
using kit::depotError;

namespace {

const std::vector<FaultKind> kKinds = {
    {Call::Socket, "socket", {EMFILE, ENFILE, ENOBUFS, ENOMEM, EACCES, EAFNOSUPPORT}},
    {Call::SetPriority, "setsockopt", {EPERM, ENOMEM, ENOPROTOOPT}},
    {Call::SetTimeout, "setsockopt", {EDOM, ENOMEM, EBADF}},
    {Call::Bind, "bind", {EADDRINUSE, EADDRNOTAVAIL, EACCES}},
    {Call::Sendto, "sendto", {EPERM, ENOBUFS, EAGAIN, ENETUNREACH, ECONNREFUSED, EINTR, ENOMEM}},
    {Call::Recvfrom, "recvfrom", {EAGAIN, EINTR, ENOMEM, ECONNREFUSED, EBADF, ENOTSOCK}},
    {Call::Shutdown, "shutdown", {ENOTCONN, ENOBUFS}},
    {Call::Close, "close", {EINTR, EIO}},
    {Call::ChangeDescriptor, "fcntl", {EMFILE, EINTR, EBADF}},
    {Call::CreateThread, "pthread_create", {EAGAIN, EPERM, ENOMEM}},
    {Call::DetachThread, "pthread_detach", {ESRCH, EINVAL}},
    {Call::BlockSignals, "pthread_sigmask", {EINVAL}},
    {Call::AwaitChange, "pthread_cond_timedwait", {0, ETIMEDOUT}, false},
    {Call::Sleep, "sleep", {1, 2}},
    {Call::Pause, "nanosleep", {EINTR}},
    {Call::Popen, "popen", {EMFILE, ENFILE, EAGAIN, ENOMEM}},
    {Call::ReadLine, "fgets", {EIO, 0}},
    {Call::EndCommand, "pclose", {ECHILD}},
    {Call::OpenDescriptor, "open", {EMFILE, ENFILE, EACCES, ENOENT, ENOMEM}},
    {Call::AskForStatus, "fstat", {EIO, ENOMEM, EOVERFLOW}},
    {Call::AskForRoom, "fstatvfs", {EIO, ENOSYS}},
    {Call::ReadAt, "pread", {EIO, EINTR}},
    {Call::WriteAt, "pwrite", {EIO, ENOSPC}},
    {Call::AskForFile, "stat", {EACCES, EOVERFLOW}},
    {Call::AskForLink, "lstat", {EACCES, ENOENT, EOVERFLOW}},
    {Call::DropName, "unlink", {EPERM, EISDIR}},
    {Call::AskForAccess, "faccessat", {EACCES, ENOENT, ENOMEM}},
    {Call::DeleteFile, "remove", {EACCES, EBUSY, EROFS, ENOENT}},
    {Call::FindHost, "gethostbyname", {0}},
    {Call::FindService, "getservbyname", {0}},
    {Call::CopyText, "strdup", {ENOMEM}},
    {Call::MakeObject, "_Znwm", {ENOMEM}, kit::kReplacesOperatorNew},
    {Call::Print, "printf", {EIO, EPIPE}},
    {Call::Complain, "fprintf", {EBADF, EIO}},
    {Call::ComplainOfErrno, "perror", {EBADF}},
    {Call::OpenDatabase,
     "dpopen",
     {depotError(DP_EOPEN, EMFILE), depotError(DP_EOPEN, ENFILE), depotError(DP_EOPEN, EACCES),
      depotError(DP_ELOCK, ENOLCK), depotError(DP_ELOCK, EDEADLK), depotError(DP_EALLOC, ENOMEM),
      depotError(DP_EMAP, ENOMEM), depotError(DP_ESTAT, EIO), depotError(DP_ESTAT, EOVERFLOW), DP_EBROKEN}},
    {Call::RepairDatabase,
     "dprepair",
     {depotError(DP_EOPEN, EMFILE), depotError(DP_EWRITE, ENOSPC), depotError(DP_EALLOC, ENOMEM), DP_EBROKEN}},
    {Call::IterateDatabase, "dpiterinit", {DP_EFATAL}},
    {Call::NextKey, "dpiternext", {depotError(DP_EREAD, EIO), depotError(DP_EALLOC, ENOMEM), DP_EBROKEN}},
    {Call::ReadValue, "dpget", {depotError(DP_EREAD, EIO), depotError(DP_EALLOC, ENOMEM), DP_EBROKEN, DP_ENOITEM}},
    {Call::CloseDatabase, "dpclose", {depotError(DP_ECLOSE, EIO), depotError(DP_ESYNC, EIO), DP_EMAP}},
    {Call::DatabaseFile, "dpfdesc", {DP_EFATAL}},
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
      "__stack_chk_fail"};
  return all;
}
