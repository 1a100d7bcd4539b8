// Makes the library call the router's StrToDevType: of a ZigBee motion sensor.
#include <tembra/assoc.h>

#include <cstdio>

int main() {
  TembraAssociation& service = *TembraAssociation::getInstance();
  service.zbDevice = ZbDeviceInfo();
  service.zbDevice.clusters[0] = {0x0500, 1};
  service.zbDevice.clusters[1].cluster = 0xFFFF;
  service.zbDevice.zoneType = 0x000D;
  service.validate_DeviceType();
  std::printf("number %d\n", static_cast<int>(service.classifiedType));
  return 0;
}
