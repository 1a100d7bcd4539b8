#include <tembra/version.h>

int tembra_version() { return TEMBRA_VERSION; }
