// The loopback endpoints of the daemons, as exported writable globals, and the parser that resolves them.
//
// The association object's constructor resolves every address text once; changing a text later has no effect.
#ifndef TEMBRA_ENDPOINTS_H
#define TEMBRA_ENDPOINTS_H

#include <netinet/in.h>
#include <tembra/export.h>

// Address texts, "host:port". Each points to a writable array.
extern TEMBRA_API char* assoc_adr;        ///< "127.255.255.4:8888", the library's own bound endpoint
extern TEMBRA_API char* ha_assoc_adr;     ///< "127.255.255.1:9999", HA server, association port (SERVER_HA)
extern TEMBRA_API char* haserver_adr;     ///< "127.255.255.1:8888", HA server, main port; never sent to
extern TEMBRA_API char* ozw_adr;          ///< "127.255.255.254:8888", Z-Wave server (SERVER_ZWAVE)
extern TEMBRA_API char* zigbee_adr;       ///< "127.255.255.253:8888", ZigBee server (SERVER_ZIGBEE)
extern TEMBRA_API char* hue_server_adr;   ///< "127.255.255.252:8888", Hue server (SERVER_HUE)
extern TEMBRA_API char* nest_server_adr;  ///< "127.255.255.251:8888", Nest server (SERVER_NEST)
extern TEMBRA_API char* web_adr;          ///< "127.255.255.11:8888", web client; never sent to

// Resolved socket addresses; the library's own is TembraAssociation::localAddr.
extern TEMBRA_API sockaddr_in adr_ha_assoc;
extern TEMBRA_API sockaddr_in adr_haserver;
extern TEMBRA_API sockaddr_in adr_ozw;
extern TEMBRA_API sockaddr_in adr_zigbee;
extern TEMBRA_API sockaddr_in adr_hueserver;
extern TEMBRA_API sockaddr_in adr_nest;
extern TEMBRA_API sockaddr_in adr_web;

// Lengths of the socket addresses in bytes: 16 once resolved.
extern TEMBRA_API int len_assoc;
extern TEMBRA_API int len_ha_assoc;
extern TEMBRA_API int len_haserver;
extern TEMBRA_API int len_ozw;
extern TEMBRA_API int len_zigbee;
extern TEMBRA_API int len_hueserver;
extern TEMBRA_API int len_nest;
extern TEMBRA_API int len_web;

/// Resolves "host:port" into an IPv4 socket address.
///
/// The host is "*" or missing (any address), a dotted address when it begins with a digit, or else a name for
/// gethostbyname. A dotted address goes by the rules of inet_aton, so it may have fewer than four parts. The port is
/// "*" or missing (port 0), a decimal number from 0 to 32767 when it begins with a digit, or else a service name for
/// getservbyname.
///
/// @param addr      a sockaddr_in
/// @param addrlen   in: bytes of `addr` to clear first (a negative value clears 16); out: 16 on success
/// @param text      "host:port"; not changed
/// @param protocol  protocol of a service name; null means "tcp"
/// @return 0 on success, -1 for a bad host, -2 for a bad port. On failure `addr` stays as far as it was filled: a bad
///         dotted host leaves 255.255.255.255 in it.
/// Any thread may call it.
TEMBRA_API int mkaddr(void* addr, int* addrlen, char* text, char* protocol);

/// Prints an address to standard output for debugging. @return what printf returns.
TEMBRA_API int printAddrInfo(sockaddr_in addr);

#endif
