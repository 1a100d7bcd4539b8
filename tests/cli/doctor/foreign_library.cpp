// What a router must not have: another device-type library, a library of another version, and names that are
// libTembraAssoc's.
#include <tembra/platform.h>
#include <tembra/version.h>

#include <cstring>

extern "C" TEMBRA_API int idle;
extern "C" TEMBRA_API char buff[64];
int idle = 7;
char buff[64];

int tembra_version() { return 20000; }

void DevtypeEnumToStr(DevType /*type*/, char* out) { std::strcpy(out, "Zebra"); }
