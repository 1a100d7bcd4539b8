// The surroundings of one run: a fresh service object, and a C library that opens no socket, starts no thread and
// waits for nothing. While a stage stands, the library under test gets sockets, threads, sleeps, pipes and name
// services from it.
#ifndef TEMBRA_FUZZ_SUPPORT_STAGE_H
#define TEMBRA_FUZZ_SUPPORT_STAGE_H

#include <sys/types.h>
#include <tembra/association.h>

#include <cstdio>
#include <vector>

namespace fuzz {

inline constexpr std::size_t kReceiveBufferSize = 4096;

/// A datagram's way out of the library.
struct Send {
  const void* datagram;
  std::size_t length;
  sockaddr_in address;
};

/// What can be made to fail, or to answer oddly, the next time.
enum class Fault {
  kSocket,
  kLowestDescriptor,
  kPriority,
  kReceiveTimeout,
  kBind,
  kSend,
  kThread,
  kPipe,
  kSleepsEndEarly
};

/// Who acts in the library's surroundings.
class Router {
 public:
  Router() = default;
  virtual ~Router() = default;
  Router(const Router&) = delete;
  Router& operator=(const Router&) = delete;

  /// The library waits for a datagram. @return its length, or -1 and errno. Without a sender it is the end of a closed
  /// connection.
  virtual ssize_t receive(int descriptor, unsigned char* buffer, sockaddr_in& sender) = 0;

  virtual void sent(const Send& /*send*/) {}
  virtual void heard(const AssocEvent& /*event*/) {}
  virtual void logged() {}

  /// Whether a call fails this time; errno is set then.
  virtual bool strikes(Fault /*fault*/) { return false; }

  /// What the router's settings command prints.
  [[nodiscard]] virtual const char* settings() const { return "3\n"; }
};

/// Whether a run finds the database that an earlier one left.
enum class Database { kNone, kKept };

class Stage {
 public:
  /// Resets the object and the globals, and moves to a folder of the program's own where the database's file is.
  explicit Stage(Router& router, Database database = Database::kNone);
  ~Stage();
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;

  /// The stage of the calling thread, null when there is none.
  static Stage* current();

  [[nodiscard]] TembraAssociation& assoc() const { return *assoc_; }
  [[nodiscard]] Router& router() const { return router_; }

  /// The descriptor of the bound socket, -1 when there is none.
  [[nodiscard]] int boundSocket() const { return bound_; }
  /// How many were bound so far: a descriptor may be that of an earlier socket again.
  [[nodiscard]] int bindings() const { return bindings_; }
  [[nodiscard]] bool hasSockets() const { return !sockets_.empty(); }

  // How the interposed calls go on.
  int openSocket();
  bool bindSocket(int descriptor);
  void closing(int descriptor);

 private:
  Router& router_;
  TembraAssociation* assoc_;
  std::vector<int> sockets_;
  int bound_ = -1;
  int bindings_ = 0;
  std::FILE* stdout_;
  std::FILE* stderr_;
};

/// The callback that hands events to the stage's router.
void hear(AssocEvent* event);

}  // namespace fuzz

#endif
