// Failures that a test orders for the library's next system calls.
#ifndef TEMBRA_TESTS_KIT_FAULTS_H
#define TEMBRA_TESTS_KIT_FAULTS_H

#include <map>
#include <mutex>
#include <vector>

#include "kit/sanitized.h"

namespace kit {

enum class Call {
  kSocket,
  kSetPriority,  // setsockopt(SO_PRIORITY)
  kSetTimeout,   // setsockopt(SO_RCVTIMEO)
  kBind,
  kSendto,
  kCreateThread,  // pthread_create; returns the error, errno holds another one; 0: says that it started a thread
  kAwaitChange,   // pthread_cond_timedwait; returns the error; 0: wakes for no reason
  kPopen,
  kOpenDatabase,     // dpopen
  kRepairDatabase,   // dprepair
  kCloseDatabase,    // dpclose; the database is closed all the same
  kIterateDatabase,  // dpiterinit
  kNextKey,          // dpiternext
  kReadValue,        // dpget
  kRecvfrom,         // with virtual time
  kSleep,            // the "error" is what is left of the time; with virtual time
  kShutdown,         // the socket is shut down all the same
  kClose,            // the descriptor is closed all the same
  kDetachThread,     // returns the error
  // The rest needs tembra-test-every-call.
  kChangeDescriptor,  // fcntl
  kBlockSignals,      // pthread_sigmask; returns the error
  kPause,             // nanosleep
  kReadLine,          // fgets
  kEndCommand,        // pclose; the command has ended all the same
  kOpenDescriptor,    // open
  kAskForStatus,      // fstat
  kAskForRoom,        // fstatvfs
  kReadAt,            // pread
  kWriteAt,           // pwrite
  kAskForFile,        // stat
  kAskForLink,        // lstat
  kDropName,          // unlink
  kAskForAccess,      // faccessat
  kDeleteFile,        // remove
  kFindHost,          // gethostbyname
  kFindService,       // getservbyname
  kCopyText,          // strdup
  kPrint,             // printf
  kComplain,          // fprintf
  kComplainOfErrno,   // perror; says nothing
  kDatabaseFile,      // dpfdesc
  kMakeObject         // operator new
};

/// The thread sanitizer lets nobody replace its operator new.
constexpr bool kReplacesOperatorNew = !kIsThreadSanitized;

/// For the Depot calls: its own code, and the errno that it leaves.
constexpr int depotError(int code, int error) { return code | error << 16; }

/// A call that the library made.
struct CountedCall {
  Call call;
  const void* site;  // where it returns to
};

/// The library's code, and whether an address lies in it.
bool isInLibrary(const void* address);

/// While it lives, this thread is inside a call that the library made of the C library.
class LibraryCall {
 public:
  explicit LibraryCall(bool isOne) : isOne_(isOne) { depth() += isOne_ ? 1 : 0; }
  ~LibraryCall() { depth() -= isOne_ ? 1 : 0; }
  LibraryCall(const LibraryCall&) = delete;
  LibraryCall& operator=(const LibraryCall&) = delete;
  static bool isOn() { return depth() > 0; }

 private:
  static int& depth();
  const bool isOne_;
};

class Faults {
 public:
  /// The next `times` calls fail with this errno (or Depot error, see depotError), after `spared` calls that do not.
  void order(Call call, int error, int times = 1, int spared = 0);

  /// Whether this call must fail; if so, errno is set.
  bool strike(Call call, const void* site = nullptr);

  /// Begins to list the calls that could have been made to fail.
  void count();

  /// The calls since then, in order; no more are listed, and no order is left.
  std::vector<CountedCall> stop();

  /// How many calls failed by order since `count`.
  int strikes();

 private:
  struct Order {
    int error = 0;
    int times = 0;
    int spared = 0;
  };
  std::mutex mutex_;
  std::map<Call, Order> orders_;
  std::vector<CountedCall> counted_;
  bool counting_ = false;
  int strikes_ = 0;
};

Faults& faults();

}  // namespace kit

#endif
