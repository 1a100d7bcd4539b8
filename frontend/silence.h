// A moment without datagrams, for writing what the library's receive thread writes as well.
#ifndef TEMBRA_FRONTEND_SILENCE_H
#define TEMBRA_FRONTEND_SILENCE_H

namespace tembra::frontend {

/// While it lives, the socket takes no datagram. Those that it took before may still be handled: see `isEmpty`.
/// A kernel without socket filters lets them in as ever.
class Silence {
 public:
  explicit Silence(int socket);
  ~Silence();
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;

  /// Whether the receive thread has fetched all that came before.
  [[nodiscard]] bool isEmpty() const;

 private:
  int socket_;
};

}  // namespace tembra::frontend

#endif
