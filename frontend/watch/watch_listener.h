// The listening end: a socket file for one group, which lies there as long as this object lives.
#ifndef TEMBRA_FRONTEND_WATCH_LISTENER_H
#define TEMBRA_FRONTEND_WATCH_LISTENER_H

#include <sys/stat.h>
#include <sys/types.h>
#include <sys/un.h>

#include <string>

#include "platform/descriptor.h"

namespace tembra::frontend {

/// The group of the folder of a path, which is made where it is missing (0750).
/// @throws std::runtime_error with a sentence where the folder is no place for the socket
[[nodiscard]] gid_t groupOfWatchFolder(const std::string& path);

/// Only the process that has the association connection makes one. So a socket file that is there already was left by a
/// dead process, unless somebody answers at it.
class WatchListener {
 public:
  /// Makes the folder where it is missing (0750), and the file (0660, with the folder's group).
  /// @throws std::runtime_error with a sentence; then nothing is left behind
  explicit WatchListener(std::string path);
  ~WatchListener();
  WatchListener(const WatchListener&) = delete;
  WatchListener& operator=(const WatchListener&) = delete;

  /// Nobody finds the socket any longer. Any thread may call it.
  void removeFile() const;

  /// Nobody can connect any longer. Any thread may call it.
  void stop() const;

  [[nodiscard]] int descriptor() const { return socket_.get(); }
  [[nodiscard]] gid_t group() const { return group_; }  ///< whose members may connect

 private:
  void bindToPath();
  void open();

  const std::string path_;
  const sockaddr_un address_;
  const gid_t group_;
  Descriptor socket_;
  struct stat file_ {};
};

}  // namespace tembra::frontend

#endif
