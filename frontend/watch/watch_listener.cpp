#include "watch_listener.h"

#include <sys/socket.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "watch_address.h"
#include "watch_peer.h"

namespace tembra::frontend {
namespace {

constexpr int kBacklog = 16;
constexpr mode_t kOfFolder = 0750;
constexpr mode_t kOfFile = 0660;
constexpr mode_t kForNobodyElse = 0600;

[[noreturn]] void refuse(const std::string& what) { throw std::runtime_error(what); }

[[noreturn]] void failAt(const std::string& what) { refuse(what + ": " + std::strerror(errno)); }

sockaddr_un addressAt(const std::string& path) {
  sockaddr_un address{};
  if (!makeAddress(path, address)) refuse("\"" + path + "\" is not absolute, or too long for a socket");
  return address;
}

/// Whether a process that still runs listens there. A socket that this process may not even connect to is none of a
/// holder's, because the holder is this process.
bool isServed(const sockaddr_un& address) {
  const Descriptor probe = newSocket();
  if (connect(probe.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
    return isAlive(probe.get());
  return errno != ECONNREFUSED && errno != EACCES;
}

void removeDeadFile(const std::string& path, const sockaddr_un& address) {
  struct stat status {};
  if (lstat(path.c_str(), &status) != 0) failAt(path);
  if (!S_ISSOCK(status.st_mode)) refuse(path + " is no socket");
  if (isServed(address)) refuse("another program serves " + path);
  if (unlink(path.c_str()) != 0) failAt(path);
}

}  // namespace

// Whoever owns or may write to the folder can put another socket in this one's place.
gid_t groupOfWatchFolder(const std::string& path) {
  const std::string folder = folderOf(path);
  if (mkdir(folder.c_str(), kOfFolder) == 0) {
    if (chmod(folder.c_str(), kOfFolder) != 0) failAt(folder);  // the process's mask may have taken the group's rights
  } else if (errno != EEXIST) {
    failAt(folder);
  }
  struct stat status {};
  if (lstat(folder.c_str(), &status) != 0) failAt(folder);
  if (!isProtectedFolder(status)) refuse(folder + " is a link or no folder, or everybody may write to it");
  if (status.st_uid != 0 && status.st_uid != geteuid()) refuse(folder + " belongs to another user");
  return status.st_gid;
}

WatchListener::WatchListener(std::string path)
    : path_(std::move(path)), address_(addressAt(path_)), group_(groupOfWatchFolder(path_)), socket_(newSocket()) {
  if (!socket_.valid()) failAt("no socket");
  bindToPath();
  try {
    open();
  } catch (...) {
    unlink(path_.c_str());
    throw;
  }
}

WatchListener::~WatchListener() { stop(); }

void WatchListener::stop() const {
  removeFile();
  shutdown(socket_.get(), SHUT_RDWR);  // a child that the program started may have the descriptor, too
}

// Until all is set up the file is the owner's alone: a file takes its rights from those of the socket, and a process's
// mask belongs to all of its threads.
void WatchListener::bindToPath() {
  if (fchmod(socket_.get(), kForNobodyElse) != 0) failAt(path_);
  const auto* const plain = reinterpret_cast<const sockaddr*>(&address_);
  if (bind(socket_.get(), plain, sizeof address_) == 0) return;
  if (errno != EADDRINUSE) failAt(path_);
  removeDeadFile(path_, address_);
  if (bind(socket_.get(), plain, sizeof address_) != 0) failAt(path_);
}

void WatchListener::open() {
  if (lchown(path_.c_str(), static_cast<uid_t>(-1), group_) != 0) failAt(path_ + " with the group of its folder");
  if (chmod(path_.c_str(), kOfFile) != 0 || lstat(path_.c_str(), &file_) != 0) failAt(path_);
  if (listen(socket_.get(), kBacklog) != 0) failAt(path_);
}

// As long as the socket is open, its file's number is nobody else's.
void WatchListener::removeFile() const {
  struct stat there {};
  const bool own = lstat(path_.c_str(), &there) == 0 && there.st_dev == file_.st_dev && there.st_ino == file_.st_ino;
  if (own) unlink(path_.c_str());
}

}  // namespace tembra::frontend
