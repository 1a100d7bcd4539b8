// The kit's part in watching: while it has the connection it serves the others, and when it has not it asks who has.
#ifndef TEMBRA_FRONTEND_WATCH_WATCHING_H
#define TEMBRA_FRONTEND_WATCH_WATCHING_H

#include <tembra/frontend.h>

#include <optional>
#include <string>

#include "inbox.h"
#include "outbox.h"
#include "watch_server.h"

namespace tembra::frontend {

/// For the worker's thread alone.
class Watching : public WatchServer::Host {
 public:
  Watching(const tembra_options& options, const Outbox& outbox, Inbox& inbox);

  /// The connection is open. Goes on serving whoever watches already.
  /// @return why nobody can watch; empty: all is well, or it was said before
  [[nodiscard]] std::string begin();

  void publish(const std::string& json);

  /// The connection is about to be closed: another process may serve from now on. Those who watch hear the rest.
  void leave();

  /// Nobody watches any longer.
  void end() { server_.reset(); }

  /// The operation failed: keeps the flight recorder in a file beside the socket.
  void keepFailure() const noexcept;

  /// Fills in who has the connection. @return the same in English; empty: nobody says so
  [[nodiscard]] std::string tellHolder(tembra_ended& ended) const;

 private:
  WatchServer::State state() override;
  void cancelAsked() override;

  const std::string path_;
  const Holder self_;
  const Outbox& outbox_;
  Inbox& inbox_;
  std::optional<WatchServer> server_;
  bool complained_ = false;
};

}  // namespace tembra::frontend

#endif
