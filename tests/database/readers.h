// Everything that reads the device database, and a home in which each finds something.
#ifndef TEMBRA_TESTS_DATABASE_READERS_H
#define TEMBRA_TESTS_DATABASE_READERS_H

#include <tembra/assoc.h>

#include "kit/router.h"

namespace house {

struct Reader {
  const char* name;
  bool looksAtOneKey;
  /// Reads and finds nothing, as far as the reader can. What it returns.
  int (*readNothing)(kit::Router&);
  int resultWithoutFile;
  /// How much it finds, and how much there is to find in the first so many devices and in what stands behind them.
  int (*count)(kit::Router&);
  int (*expected)(int devices, bool restIsKept);
};

extern const Reader kReaders[5];

/// The devices 1 to 50: each fifth a Hue lamp, the others with a Z-Wave node of their number and a ZigBee address. Then
/// the lamps' index records, then the next id.
void fillInOrder(kit::Database& database);

}  // namespace house

#endif
