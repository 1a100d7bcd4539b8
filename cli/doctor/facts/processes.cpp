#include "cli/doctor/facts/processes.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <system_error>

#include "platform/printable.h"

namespace tembra::cli::doctor {
namespace {

namespace fs = std::filesystem;

fs::path folderOf(pid_t id) { return fs::path("/proc") / std::to_string(id); }

bool hasOpen(const fs::path& process, const std::string& target) {
  std::error_code failure;
  for (fs::directory_iterator file(process / "fd", failure), end; !failure && file != end; file.increment(failure)) {
    std::error_code closed;
    if (fs::read_symlink(file->path(), closed) == target) return true;
  }
  return false;
}

// The 22nd word of /proc/PID/stat: clock ticks between the machine's start and the process's. The name, in brackets,
// may have blanks and brackets.
std::optional<long long> startInTicks(pid_t id) {
  std::ifstream file(folderOf(id) / "stat");
  std::string line;
  std::getline(file, line);
  const std::size_t name = line.rfind(')');
  if (name == std::string::npos) return std::nullopt;
  std::istringstream words(line.substr(name + 1));
  constexpr int kBefore = 19;
  std::string skipped;
  for (int i = 0; i < kBefore; ++i) words >> skipped;
  long long ticks = 0;
  if (!(words >> ticks)) return std::nullopt;
  return ticks;
}

}  // namespace

std::optional<Process> findProcess(pid_t id) {
  struct stat status = {};
  if (stat(folderOf(id).c_str(), &status) != 0) return std::nullopt;
  std::ifstream file(folderOf(id) / "comm");
  std::string name;
  std::getline(file, name);
  return Process{id, status.st_uid, printable(name)};
}

std::vector<Process> processesWithSocket(unsigned long inode) {
  const std::string target = "socket:[" + std::to_string(inode) + "]";
  std::vector<Process> found;
  std::error_code failure;
  for (fs::directory_iterator entry("/proc", failure), end; !failure && entry != end; entry.increment(failure)) {
    const int id = std::atoi(entry->path().filename().c_str());
    if (id <= 0 || !hasOpen(entry->path(), target)) continue;
    if (const auto process = findProcess(id)) found.push_back(*process);
  }
  return found;
}

std::optional<bool> usesLibrary(const Process& process, const std::string& name) {
  std::ifstream maps(folderOf(process.id) / "maps");
  if (!maps) return std::nullopt;
  bool isTold = false;
  for (std::string line; std::getline(maps, line); isTold = true) {
    if (line.find("/" + name) != std::string::npos) return true;
  }
  return isTold ? std::optional(false) : std::nullopt;
}

std::optional<std::time_t> startOf(pid_t id) {
  const auto ticks = startInTicks(id);
  timespec now{};
  if (!ticks || clock_gettime(CLOCK_BOOTTIME, &now) != 0) return std::nullopt;
  const auto age = static_cast<std::time_t>(now.tv_sec - *ticks / sysconf(_SC_CLK_TCK));
  return std::time(nullptr) - age;
}

std::string userName(uid_t user) {
  const passwd* const entry = getpwuid(user);
  return entry == nullptr ? std::to_string(user) : printable(std::string(entry->pw_name));
}

std::string describe(const Process& process) {
  return process.name + " (process " + std::to_string(process.id) + ", user " + userName(process.user) + ")";
}

std::string describe(const std::vector<Process>& processes) {
  std::string text;
  for (const Process& process : processes) text += (text.empty() ? "" : " and ") + describe(process);
  return text;
}

}  // namespace tembra::cli::doctor
