// The device database as it lies there, read without the library and without the simulated router.
#ifndef TEMBRA_TESTS_CAMPAIGN_DATABASE_H
#define TEMBRA_TESTS_CAMPAIGN_DATABASE_H

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace campaign {

struct StoredDevice {
  int id = 0;
  int radio = 0;
  unsigned address = 0;  ///< the Z-Wave node, or the ZigBee address
  unsigned zigbeeAddress = 0;
  std::string name;
  std::string type;
  std::vector<std::pair<int, int>> slots;  ///< type and instance of its index records, in the order of their numbers

  /// "Z-Wave 2 Lamp BinarySwitch"
  [[nodiscard]] std::string text() const;
};

struct Database {
  std::map<std::string, std::string> records;  ///< all of them, by their keys
  std::vector<StoredDevice> devices;           ///< in the order of their ids
  std::vector<std::string> mistakes;           ///< what no database may look like
};

Database readDatabase();

inline constexpr char kDatabasePath[] = "/tmp/ddb";
inline constexpr char kAuthorisationPath[] = "/tmp/Authcode";

}  // namespace campaign

#endif
