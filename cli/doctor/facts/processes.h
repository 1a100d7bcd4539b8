// The processes of this machine, as far as this user may see them.
#ifndef TEMBRA_CLI_DOCTOR_PROCESSES_H
#define TEMBRA_CLI_DOCTOR_PROCESSES_H

#include <sys/types.h>

#include <ctime>
#include <optional>
#include <string>
#include <vector>

namespace tembra::cli::doctor {

struct Process {
  pid_t id = 0;
  uid_t user = 0;
  std::string name;
};

/// Nothing: there is no such process.
[[nodiscard]] std::optional<Process> findProcess(pid_t id);

/// Those that have the socket open. A child that was started meanwhile may have it, too.
[[nodiscard]] std::vector<Process> processesWithSocket(unsigned long inode);

/// Whether a library of this name is mapped. Nothing: this user may not look.
[[nodiscard]] std::optional<bool> usesLibrary(const Process& process, const std::string& name);

/// By the clock as it is now.
[[nodiscard]] std::optional<std::time_t> startOf(pid_t id);

/// "ha", or "990" without a name.
[[nodiscard]] std::string userName(uid_t user);

/// "kiosk (process 812, user ha)"
[[nodiscard]] std::string describe(const Process& process);
/// "kiosk (process 812, user ha) and sleep (process 813, user ha)"
[[nodiscard]] std::string describe(const std::vector<Process>& processes);

}  // namespace tembra::cli::doctor

#endif
