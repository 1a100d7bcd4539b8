// Datagrams and addresses as readable texts.
#ifndef TEMBRA_TESTS_KIT_DATAGRAM_TEXT_H
#define TEMBRA_TESTS_KIT_DATAGRAM_TEXT_H

#include <sys/socket.h>

#include <string>

#include "kit/trace.h"

namespace kit {

/// "127.255.255.254:8888"
std::string addressText(const sockaddr* address);

/// "zigbee", "zwave", "hue", "nest", "ha" for the daemons' sockets that listen to the library, else the address.
std::string endpointName(const sockaddr* address);

/// Destination, length and content. Bytes that are not zero and not shown otherwise are listed at the end as
/// "stray @<offset>", so that an equal text means equal bytes for commands to the radio servers. A notice to the HA
/// server shows the main fields of its record and is strict about the bytes behind the record only.
std::string datagramText(const Datagram& datagram);

}  // namespace kit

#endif
