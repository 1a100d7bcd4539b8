// What the checks look at, read once for all of them.
#ifndef TEMBRA_CLI_DOCTOR_ROUTER_H
#define TEMBRA_CLI_DOCTOR_ROUTER_H

#include <netinet/in.h>
#include <sys/types.h>
#include <tembra/watch.h>

#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "cli/context.h"
#include "cli/doctor/facts/database_snapshot.h"
#include "cli/doctor/facts/processes.h"
#include "cli/doctor/facts/udp_sockets.h"

namespace tembra::cli::doctor {

/// What the watch socket answered.
struct Holder {
  int error = 0;  ///< of tembra_read_holder
  tembra_holder told{};
};

/// A socket, and who has it.
struct Owned {
  UdpSocket socket;
  std::vector<Process> processes;  ///< none: this user cannot see them
};

/// "kiosk (process 812, user ha)", "a process of user ha"
[[nodiscard]] std::string whoText(const Owned& owned);

class Router {
 public:
  /// @param program a front end's program to look at, or empty
  Router(const Context& context, std::string program) : context_(context), program_(std::move(program)) {}

  [[nodiscard]] const Context& context() const { return context_; }
  [[nodiscard]] const std::string& program() const { return program_; }
  [[nodiscard]] std::string databaseName() const;

  [[nodiscard]] const UdpTable& udp();
  /// Of the sockets that get what is sent there.
  [[nodiscard]] std::vector<Owned> ownersOf(char* address);
  [[nodiscard]] const Holder& holder();
  /// Forgets sockets and holder: they were read at different moments, so that a front end that came or went meanwhile
  /// shows in one of them only.
  void readConnectionAnew();
  [[nodiscard]] const Snapshot& database();
  [[nodiscard]] const std::vector<nlohmann::json>& history();

  /// Whose processes use the database, as far as their sockets tell: the HA server's and the front end's.
  [[nodiscard]] std::set<uid_t> databaseUsers();

 private:
  const Context& context_;
  const std::string program_;
  std::optional<UdpTable> udp_;
  std::optional<Holder> holder_;
  std::optional<Snapshot> database_;
  std::optional<std::vector<nlohmann::json>> history_;
};

/// "/tmp/ddb: Permission denied.", where the device database could not be read.
[[nodiscard]] std::string unreadProof(Router& router);

/// An address text of <tembra/endpoints.h> as an address.
[[nodiscard]] sockaddr_in endpoint(char* text);

/// Local time: "10:31:02" of today, else with the date.
[[nodiscard]] std::string momentText(std::time_t moment);

/// "this, that and 3 more": at most so many of them.
[[nodiscard]] std::string listed(const std::vector<std::string>& all, std::size_t most);

/// "1 device", "2 devices"
[[nodiscard]] std::string counted(std::size_t count, const std::string& noun);

}  // namespace tembra::cli::doctor

#endif
