// The system's host and service names, as the tests define them: no network and no /etc/services is asked.
#ifndef TEMBRA_TESTS_ASSOC_NAME_SERVICES_H
#define TEMBRA_TESTS_ASSOC_NAME_SERVICES_H

// Hosts: "router.home" is 127.9.8.7, "six.home" has an IPv6 address only. Services: "tembra" is 4321 by udp and 1234
// by tcp. Nothing else is known.

#endif
