// Makes the library call the router's functions: Logger::Log and DevtypeEnumToStr.
#include <tembra/assoc.h>

#include <cstdio>

int main() {
  unsigned char datagram[4100] = {};
  TembraAssociation::getInstance()->sendToServers(SERVER_MESH, datagram);
  char name[192];
  getDefaultDevName(DEVTYPE_SIREN, 3, name);
  std::printf("name %s\n", name);
  return 0;
}
