#include "cli/doctor/facts/router.h"

#include <tembra/endpoints.h>
#include <tembra/globals.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "cli/commands/database_file.h"
#include "cli/doctor/facts/flight_recorder.h"

namespace tembra::cli::doctor {

std::string Router::databaseName() const { return databasePath(context_.options); }

std::string whoText(const Owned& owned) {
  return owned.processes.empty() ? "a process of user " + userName(owned.socket.user) : describe(owned.processes);
}

const UdpTable& Router::udp() {
  if (!udp_) udp_ = readUdpTable();
  return *udp_;
}

// Since the table was read a socket without a process may have gone, and a missing one may have come.
std::vector<Owned> Router::ownersOf(char* address) {
  std::vector<Owned> owners;
  for (const bool isSecondLook : {false, true}) {
    if (isSecondLook) udp_.reset();
    owners.clear();
    for (const UdpSocket& socket : udp().at(endpoint(address))) {
      owners.push_back({socket, processesWithSocket(socket.inode)});
    }
    const bool areSeen = std::ranges::none_of(owners, [](const Owned& one) { return one.processes.empty(); });
    if (areSeen && !owners.empty()) break;
  }
  return owners;
}

void Router::readConnectionAnew() {
  udp_.reset();
  holder_.reset();
}

const Holder& Router::holder() {
  constexpr int kMilliseconds = 500;
  if (!holder_) {
    holder_.emplace();
    holder_->told.size = sizeof holder_->told;
    holder_->error = tembra_read_holder(context_.options.watchPath.c_str(), kMilliseconds, &holder_->told);
  }
  return *holder_;
}

const Snapshot& Router::database() {
  if (!database_) database_ = readSnapshot(context_, DBName);
  return *database_;
}

const std::vector<nlohmann::json>& Router::history() {
  if (!history_) history_ = readFlightRecorder(context_.options.watchPath);
  return *history_;
}

std::set<uid_t> Router::databaseUsers() {
  std::set<uid_t> users;
  for (char* const address : {ha_assoc_adr, assoc_adr}) {
    for (const UdpSocket& socket : udp().at(endpoint(address))) users.insert(socket.user);
  }
  return users;
}

std::string unreadProof(Router& router) {
  const int error = router.database().error;
  return router.databaseName() + ": " + (error == EAGAIN ? "it stays locked" : std::strerror(error)) + ".";
}

sockaddr_in endpoint(char* text) {
  sockaddr_in address{};
  int length = sizeof address;
  char protocol[] = "udp";
  mkaddr(&address, &length, text, protocol);
  return address;
}

std::string momentText(std::time_t moment) {
  constexpr std::time_t kDay = std::time_t{24} * 60 * 60;
  const bool isRecent = std::llabs(static_cast<long long>(std::time(nullptr)) - moment) < kDay;
  std::tm local{};
  if (localtime_r(&moment, &local) == nullptr) return std::to_string(moment) + " s after 1970";
  char text[32] = {};
  std::strftime(text, sizeof text, isRecent ? "%H:%M:%S" : "%Y-%m-%d %H:%M:%S", &local);
  return text;
}

std::string listed(const std::vector<std::string>& all, std::size_t most) {
  std::string text;
  for (std::size_t i = 0; i < std::min(all.size(), most); ++i) text += (i == 0 ? "" : ", ") + all[i];
  return text + (all.size() > most ? " and " + std::to_string(all.size() - most) + " more" : "");
}

std::string counted(std::size_t count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

}  // namespace tembra::cli::doctor
