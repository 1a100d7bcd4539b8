// A house's database, with everything that a Depot file can hold: devices, index records, dropped records, records that
// have moved because they grew.
#ifndef TEMBRA_TESTS_DATABASE_HOUSE_H
#define TEMBRA_TESTS_DATABASE_HOUSE_H

#include <tembra/assoc.h>

#include <string>

#include "kit/router.h"

namespace house {

constexpr int kDevices = 40;

inline void fill(kit::Database& database) {
  database.nextId("77");
  for (int id = 1; id <= kDevices; ++id) {
    database.put(kit::Device(id, "Lamp").cutTo(400).zwave(static_cast<unsigned>(id)));
    database.index(id, 1, "some value");
  }
  for (int id = 3; id <= kDevices; id += 9) database.drop(std::to_string(id) + ".1");
  for (int id = 1; id <= kDevices; ++id) {
    database.put(kit::Device(id, "Lamp " + std::to_string(id)).zwave(static_cast<unsigned>(id)));
  }
}

inline int findNode(kit::Router& router, int node) {
  router.assoc().zwNodeRx.nodeId = static_cast<unsigned char>(node);
  return router.assoc().ZW_checkNodeExists();
}

inline int countFound(kit::Router& router) {
  int found = 0;
  for (int node = 1; node <= kDevices; ++node) found += findNode(router, node);
  return found;
}

}  // namespace house

#endif
