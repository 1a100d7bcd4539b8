// Everything that reads the device database.
#ifndef TEMBRA_TESTS_DATABASE_READERS_H
#define TEMBRA_TESTS_DATABASE_READERS_H

#include <tembra/assoc.h>

#include <cstdlib>

namespace house {

struct Reader {
  const char* name;
  int (*read)(TembraAssociation&);
  int resultWithoutFile;
};

inline constexpr Reader kReaders[] = {
    {"known node", [](TembraAssociation& assoc) { return assoc.ZW_checkNodeExists(); }, 0},
    {"removal", [](TembraAssociation& assoc) { return assoc.ZW_removeNode(); }, -1},
    {"ZigBee removal", [](TembraAssociation& assoc) { return assoc.zb_removeNode(0x1234); }, -1},
    {"next id", [](TembraAssociation& assoc) { return assoc.calculateDevId(); }, -1},
    {"bridge list",
     [](TembraAssociation& assoc) {
       char* const list = assoc.Hue_getBridgeList();
       std::free(list);
       return list == nullptr ? 0 : 1;
     },
     0},
};

}  // namespace house

#endif
