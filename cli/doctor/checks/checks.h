// All checks of the doctor, a function each. None changes anything, and each waits for a bounded time.
#ifndef TEMBRA_CLI_DOCTOR_CHECKS_H
#define TEMBRA_CLI_DOCTOR_CHECKS_H

#include <span>

#include "cli/doctor/checks/check.h"

namespace tembra::cli::doctor {

/// In the order in which they are told: what others depend on first.
[[nodiscard]] std::span<const Check> allChecks();

// The network: network_checks.cpp.
Verdict checkLoopback(Router& router);
Verdict checkDatagram(Router& router);
Verdict checkRouteLocalnet(Router& router);
Verdict checkLostDatagrams(Router& router);

// The daemons: server_checks.cpp.
Verdict checkHaServer(Router& router);
Verdict checkZwaveServer(Router& router);
Verdict checkZigbeeServer(Router& router);
Verdict checkHueServer(Router& router);
Verdict checkNestServer(Router& router);

// The front ends: connection_checks.cpp.
Verdict checkPort(Router& router);
Verdict checkConnection(Router& router);
Verdict checkWatchSocket(Router& router);

// The database's file: database_file_checks.cpp and database_rights_checks.cpp.
Verdict checkDatabase(Router& router);
Verdict checkDatabaseLock(Router& router);
Verdict checkDatabaseRoom(Router& router);
Verdict checkDatabaseRepair(Router& router);
Verdict checkDatabaseOwner(Router& router);
Verdict checkDatabaseMode(Router& router);
Verdict checkDatabaseAccess(Router& router);
Verdict checkDatabaseProtection(Router& router);

// What stands in the database: database_content_checks.cpp.
Verdict checkDatabaseDamage(Router& router);
Verdict checkDatabaseIds(Router& router);
Verdict checkDatabaseNextId(Router& router);
Verdict checkDatabaseRadios(Router& router);
Verdict checkDatabaseAddresses(Router& router);
Verdict checkDatabaseTypes(Router& router);
Verdict checkHueUsers(Router& router);

// The system: system_checks.cpp and clock_check.cpp.
Verdict checkNvram(Router& router);
Verdict checkPlatform(Router& router);
Verdict checkPlatformNames(Router& router);
Verdict checkVersions(Router& router);
Verdict checkClock(Router& router);

// The flight recorder: history_checks.cpp.
Verdict checkLastFailure(Router& router);

// A front end's program: program_check.cpp.
Verdict checkProgramNames(Router& router);

}  // namespace tembra::cli::doctor

#endif
