// The id that the next device gets.
#include <tembra/association.h>
#include <tembra/globals.h>

#include <cstdlib>

#include "database/device_database.h"
#include "depot/keys.h"
#include "support/state_lock.h"

namespace {

constexpr std::size_t kIdTextSize = 11;  // at most 10 characters are read
constexpr int kNoDatabase = -1;

}  // namespace

int TembraAssociation::calculateDevId() {
  const tembra::StateLock lock;
  char text[kIdTextSize] = {};
  bool found = false;
  {
    tembra::ValueSession database(tembra::depot::kNextIdKey);
    if (!database.isOpen()) return kNoDatabase;
    found = database.readText(text, sizeof text);
  }
  if (found) DevId = std::atoi(text);
  return DevId;
}
