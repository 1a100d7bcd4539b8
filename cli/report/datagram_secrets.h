// Where names, places, users and codes stand in the system's datagrams.
#ifndef TEMBRA_CLI_DATAGRAM_SECRETS_H
#define TEMBRA_CLI_DATAGRAM_SECRETS_H

#include "cli/report/stand_ins.h"
#include "recording/reader.h"

namespace tembra::cli::report {

void learnFrom(const recording::Datagram& datagram, StandIns& standIns);

/// Puts stand-ins into the fields, and zeros behind their ends: old bytes may be a part of a name. Then everywhere
/// else.
void replaceIn(recording::Datagram& datagram, const StandIns& standIns);

}  // namespace tembra::cli::report

#endif
