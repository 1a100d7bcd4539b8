// Bridge ids and MAC addresses of Hue bridges.
#ifndef TEMBRA_HUE_H
#define TEMBRA_HUE_H

#include <tembra/export.h>

/// Writes the bridge id of a MAC text ("a1:b2:c3:0a:1b:2c" gives "a1b2c3fffe0a1b2c") and a NUL: 17 bytes. The form of
/// the input is not checked; characters behind its end count as NUL. @return 16.
TEMBRA_API int RevertHueMac(char* mac, char* out);

/// Writes the MAC text of a bridge id and a NUL: 18 bytes; the converse of RevertHueMac. @return 17.
TEMBRA_API int HueMac(char* bridgeId, char* out);

#endif
