// Who has the association connection.
#include <sys/stat.h>
#include <tembra/endpoints.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "cli/doctor/checks/checks.h"
#include "cli/doctor/facts/router.h"
#include "platform/printable.h"

namespace tembra::cli::doctor {
namespace {

constexpr char kLibrary[] = "libTembraAssoc.so";

// Since when a process may have had the connection at most.
std::string sinceText(const Owned& taker) {
  const auto start = taker.processes.empty() ? std::nullopt : startOf(taker.processes.front().id);
  return start ? ", started at " + momentText(*start) + "," : "";
}

bool isHolder(Router& router, const Process& process) {
  const Holder& holder = router.holder();
  return holder.error == 0 && holder.told.pid == process.id;
}

// A process of another user keeps its libraries to itself; then what it says about itself counts.
bool isFrontEnd(Router& router, const Owned& taker) {
  if (taker.processes.empty()) return router.holder().error == 0;
  return std::ranges::any_of(taker.processes, [&router](const Process& process) {
    return isHolder(router, process) || usesLibrary(process, kLibrary).value_or(false);
  });
}

Verdict verdictOnTaker(Router& router, const Owned& taker) {
  const std::string who = whoText(taker);
  if (taker.socket.isAnyAddress) {
    return finding("Port 8888 is taken at every address, so no front end can open its connection.",
                   "0.0.0.0:8888 belongs to " + who + ".", "Let that program listen at an address of its own.");
  }
  if (isFrontEnd(router, taker)) return well(std::string(assoc_adr) + " belongs to a front end: " + who + ".");
  if (taker.processes.empty()) {
    return note(std::string(assoc_adr) + " belongs to " + who + ", which this user cannot see.", "",
                "Ask again as root or as that user.");
  }
  return finding("The front ends' address is taken by a program that is no front end.",
                 std::string(assoc_adr) + " belongs to " + who + ", which has not loaded " + kLibrary + ".",
                 "End that process. A program that a front end started may have inherited the socket.");
}

std::string holderText(const tembra_holder& told) {
  std::string text = printable(std::string(told.program)) + " (process " + std::to_string(told.pid) +
                     ") has the connection since " + momentText(static_cast<std::time_t>(told.since)) + ": ";
  text += printable(std::string(told.operation));
  if (std::string phase = printable(std::string(told.phase)); phase != "none") text += ", " + phase;
  return text + ".";
}

bool isNobody(int error) { return error == ENOENT || error == ECONNREFUSED; }

Verdict verdictOnPort(Router& router) {
  if (!router.udp().isTold) return note("The kernel does not tell who has the front ends' address.");
  const std::vector<Owned> takers = router.ownersOf(assoc_adr);
  if (takers.empty()) return well(std::string(assoc_adr) + " is free for a front end.");
  for (const Owned& taker : takers) {
    Verdict verdict = verdictOnTaker(router, taker);
    if (verdict.status != Status::kWell || &taker == &takers.back()) return verdict;
  }
  return {};
}

Verdict verdictOnConnection(Router& router) {
  const std::vector<Owned> takers = router.ownersOf(assoc_adr);
  const Holder& holder = router.holder();
  const bool isTaken = !takers.empty() || !router.udp().isTold;
  if (holder.error == 0 && isTaken) return note(holderText(holder.told));
  if (holder.error == 0) {
    return finding("A front end has the connection of another network, but answers here.",
                   holderText(holder.told) + " " + assoc_adr + " is free in this network.",
                   "Give the front ends of each network a watch socket of their own.");
  }
  if (takers.empty() || !isFrontEnd(router, takers.front())) return well("No front end has the connection.");
  return note("A front end has the connection, but does not say what it does.",
              whoText(takers.front()) + sinceText(takers.front()) + " has " + assoc_adr + "; " +
                  router.context().options.watchPath + ": " + std::strerror(holder.error) + ".",
              "With the kit's option watch_path it could be watched and cancelled.");
}

// Once more when something does not fit: a front end may have come or gone between the looks.
Verdict secondLook(Router& router, Verdict (*look)(Router& router)) {
  router.readConnectionAnew();
  return look(router);
}

}  // namespace

Verdict checkPort(Router& router) {
  Verdict first = verdictOnPort(router);
  return first.status == Status::kWell ? first : secondLook(router, verdictOnPort);
}

Verdict checkConnection(Router& router) {
  const bool isHeld = router.holder().error == 0;
  const bool isTaken = !router.udp().at(endpoint(assoc_adr)).empty();
  return isHeld == isTaken ? verdictOnConnection(router) : secondLook(router, verdictOnConnection);
}

Verdict checkWatchSocket(Router& router) {
  const std::string& path = router.context().options.watchPath;
  const std::string folder = std::filesystem::path(path).parent_path();
  const int error = router.holder().error;
  struct stat status = {};
  if (error == 0) return well("The watch socket " + path + " answers.");
  if (lstat(folder.c_str(), &status) != 0) return well("There is no watch socket " + path + ".");
  if (!S_ISDIR(status.st_mode) || (status.st_mode & S_IWOTH) != 0) {
    return finding("Front ends do not serve watchers in a folder that everybody may write to, or that is a link.",
                   folder + " belongs to user " + userName(status.st_uid) + ".",
                   "Make it a folder of the front ends' user with mode 0750.");
  }
  if (lstat(path.c_str(), &status) == 0 && !S_ISSOCK(status.st_mode)) {
    return finding("Something else stands in the place of the watch socket.", path + " is no socket.",
                   "Remove it, or give the front ends another path.");
  }
  if (error == EACCES) return note("This user may not watch the front ends: " + path + ".");
  if (isNobody(error)) return well("Nobody serves the watch socket " + path + ".");
  return finding("The front end at the watch socket does not answer.", path + ": " + std::strerror(error) + ".",
                 "See whether that process hangs or was stopped.");
}

}  // namespace tembra::cli::doctor
