// Runs a command with a loopback network and a /tmp of its own: the command uses the real addresses and the real
// database path without touching the machine, and many commands can do so at once.
#include <fcntl.h>
#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <tembra/version.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr int kWrongUsage = 2;
constexpr int kNotPermitted = 125;
constexpr int kNotStarted = 126;

constexpr const char* kUsage =
    "usage: tembra-isolate [--speed N] COMMAND [ARG...]\n"
    "       tembra-isolate --help | --version\n"
    "\n"
    "Runs COMMAND with a loopback network and a /tmp of its own, so that it touches nothing on the machine.\n"
    "\n"
    "  --speed N   what libTembraAssoc waits for ends N times sooner, 1 to 100000: a time-out of three minutes in two\n"
    "              seconds with --speed 90. Other waits, clocks and countdowns stay as they are. (The simulated "
    "router\n"
    "              has an option of this name, too, for what it does itself.)\n"
    "\n"
    "Exit status: the command's; 2 wrong usage, 125 private namespaces are not permitted, 126 the command cannot "
    "start.\n";

void writeFile(const char* path, const std::string& text) { std::ofstream(path) << text; }

// A user namespace is the way in for everybody but root.
bool enterNamespaces() {
  constexpr int kinds = CLONE_NEWNET | CLONE_NEWNS;
  if (geteuid() == 0 && unshare(kinds) == 0) return true;
  const std::string user = "0 " + std::to_string(getuid()) + " 1";
  const std::string group = "0 " + std::to_string(getgid()) + " 1";
  if (unshare(kinds | CLONE_NEWUSER) != 0) return false;
  writeFile("/proc/self/setgroups", "deny");
  writeFile("/proc/self/uid_map", user);
  writeFile("/proc/self/gid_map", group);
  return true;
}

bool raiseLoopback() {
  const int fd = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  ifreq request{};
  std::strcpy(request.ifr_name, "lo");
  request.ifr_flags = IFF_UP | IFF_RUNNING;
  const bool up = fd >= 0 && ioctl(fd, SIOCSIFFLAGS, &request) == 0;
  if (fd >= 0) close(fd);
  return up;
}

fs::path ownFolder() {
  std::error_code failure;
  return fs::read_symlink("/proc/self/exe", failure).parent_path();
}

// What is installed for this program alone, and the stand-in for the router's settings command.
fs::path privateFolder() { return (ownFolder() / TEMBRA_PRIVATE_FOLDER).lexically_normal(); }

bool liesUnderTmp(const fs::path& path) { return path.native().rfind("/tmp/", 0) == 0; }

// What lives under /tmp must stay visible: its folders are opened before the new /tmp covers them and bound back into
// it afterwards.
class KeptFolder {
 public:
  explicit KeptFolder(fs::path path) : path_(std::move(path)), fd_(open(path_.c_str(), O_PATH | O_DIRECTORY)) {}
  bool bindBack() const {
    if (fd_ < 0) return true;
    std::error_code failure;
    fs::create_directories(path_, failure);
    const std::string source = "/proc/self/fd/" + std::to_string(fd_);
    const bool bound = mount(source.c_str(), path_.c_str(), nullptr, MS_BIND | MS_REC, nullptr) == 0;
    close(fd_);
    return bound;
  }

 private:
  fs::path path_;
  int fd_;
};

bool coverTmp(const fs::path& command) {
  const fs::path here = fs::current_path();
  const fs::path tree = ownFolder().parent_path();  // the installed one, or the build folder with a link to its sources
  std::error_code failure;
  std::vector<KeptFolder> kept;
  for (const fs::path& folder : {fs::read_symlink(tree / "source", failure), tree, here, command.parent_path()}) {
    if (liesUnderTmp(folder)) kept.emplace_back(folder);
  }
  if (mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return false;
  if (mount("tmpfs", "/tmp", "tmpfs", MS_NOSUID | MS_NODEV, "mode=1777") != 0) return false;
  for (const KeptFolder& folder : kept) {
    if (!folder.bindBack()) return false;
  }
  return chdir(here.c_str()) == 0;
}

// In front of what is preloaded already.
void preload(const char* library) {
  const char* others = std::getenv("LD_PRELOAD");
  const std::string all = others == nullptr ? library : std::string(library) + ":" + others;
  setenv("LD_PRELOAD", all.c_str(), 1);
}

// Installed, or in the build folder.
fs::path hasteLibrary() {
  const char* const name = "libtembra-haste.so";
  std::error_code failure;
  const fs::path installed = privateFolder() / name;
  return fs::exists(installed, failure) ? installed : ownFolder().parent_path() / "lib" / name;
}

bool hurry(const std::string& speed) {
  const bool isNumber = !speed.empty() && speed.find_first_not_of("0123456789") == std::string::npos;
  if (!isNumber || speed.size() > 6 || std::stol(speed) < 1 || std::stol(speed) > 100'000) return false;
  setenv("TEMBRA_SPEED", speed.c_str(), 1);
  preload(hasteLibrary().c_str());
  return true;
}

// The router's own settings command comes first, where there is one.
void offerSettingsCommand() {
  const char* path = std::getenv("PATH");
  const fs::path folder = privateFolder();
  if (path == nullptr || !fs::exists(folder / "nvram_get")) return;
  setenv("PATH", (std::string(path) + ":" + folder.native()).c_str(), 1);
}

[[noreturn]] void refuse(const std::string& what) {
  std::fprintf(stderr, "tembra-isolate: %s; see tembra-isolate --help\n", what.c_str());
  std::exit(kWrongUsage);
}

[[noreturn]] void answer(const char* text) {
  const bool written = std::fputs(text, stdout) >= 0 && std::fflush(stdout) == 0;
  std::exit(written ? 0 : 1);
}

/// @return the place of the command among the arguments
int readOptions(int count, char** arguments) {
  int at = 1;
  for (; at < count && arguments[at][0] == '-'; ++at) {
    const std::string option = arguments[at];
    if (option == "--help" || option == "-h") answer(kUsage);
    if (option == "--version") answer("tembra-isolate " TEMBRA_VERSION_TEXT "\n");
    if (option != "--speed") refuse("no option " + option);
    if (++at == count || !hurry(arguments[at])) refuse("--speed takes a number, 1 to 100000");
  }
  if (at == count) refuse("no command");
  return at;
}

}  // namespace

int main(int argc, char** argv) {
  char** const command = argv + readOptions(argc, argv);
  if (!enterNamespaces() || !raiseLoopback() || !coverTmp(*command)) {
    std::fprintf(stderr, "tembra-isolate: private namespaces are not permitted here: %s\n", std::strerror(errno));
    return kNotPermitted;
  }
  offerSettingsCommand();
  unsetenv("XDG_RUNTIME_DIR");  // it is shared with the world outside, as is /run, where front ends meet
  setenv("TEMBRA_WATCH_PATH", "/tmp/tembra/front-end", 0);
  execvp(*command, command);
  std::fprintf(stderr, "tembra-isolate: %s: %s\n", *command, std::strerror(errno));
  return kNotStarted;
}
