// Where names, places, users and codes stand in the system's datagrams, and in the records of its database.
#ifndef TEMBRA_CLI_DATAGRAM_SECRETS_H
#define TEMBRA_CLI_DATAGRAM_SECRETS_H

#include "cli/report/stand_ins.h"
#include "recording/database_lines.h"
#include "recording/reader.h"

namespace tembra::cli::report {

void learnFrom(const recording::Datagram& datagram, StandIns& standIns);

/// Puts stand-ins into the fields, and zeros behind their ends: old bytes may be a part of a name. Then everywhere
/// else.
void replaceIn(recording::Datagram& datagram, const StandIns& standIns);

/// The same in a record of the device database. What no front end reads of it is cleared: it is the HA server's own,
/// and may be a room. @return whether the record may stay; no front end knows the meaning of other keys
[[nodiscard]] bool replaceIn(recording::DatabaseRecord& record, const StandIns& standIns);

}  // namespace tembra::cli::report

#endif
