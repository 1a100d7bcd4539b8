// Routers whose device database is broken.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "doctor/broken_router.h"
#include "support/files.h"

namespace tembra::test {
namespace {

Kept missing() {
  std::filesystem::remove(kDatabase);
  return nullptr;
}

Kept folder() {
  std::filesystem::remove(kDatabase);
  std::filesystem::create_directory(kDatabase);
  return nullptr;
}

Kept linkToNothing() {
  std::filesystem::remove(kDatabase);
  std::filesystem::create_symlink("/tmp/elsewhere", kDatabase);
  return nullptr;
}

Kept pipeFile() {
  std::filesystem::remove(kDatabase);
  EXPECT_EQ(mkfifo(kDatabase, 0600), 0);
  return nullptr;
}

// A file of another user: one that root gives away, or else one that belongs to root.
Kept foreign() {
  if (chown(kDatabase, 12345, 12345) == 0) return nullptr;
  EXPECT_EQ(mount("/etc/passwd", kDatabase, nullptr, MS_BIND, nullptr), 0);
  return nullptr;
}

Kept protectedByKernel() {
  writeFile("/tmp/protected", "2\n");
  EXPECT_EQ(mount("/tmp/protected", "/proc/sys/fs/protected_regular", nullptr, MS_BIND, nullptr), 0);
  return foreign();
}

Kept writableByAll() {
  EXPECT_EQ(chmod(kDatabase, 0666), 0);
  return nullptr;
}

// Of the files that the system refuses to open for writing only this one stops root.
Kept running() {
  std::filesystem::remove(kDatabase);
  std::filesystem::copy_file("/bin/sleep", kDatabase);
  return std::make_shared<Program>(std::vector<std::string>{kDatabase, "60"});
}

Kept locked() { return std::make_shared<OpenDatabase>(); }

Kept smallFileSystem() {
  std::filesystem::create_directory("/tmp/small");
  EXPECT_EQ(mount("tmpfs", "/tmp/small", "tmpfs", 0, "size=64k"), 0);
  std::filesystem::copy_file(kDatabase, "/tmp/small/ddb");
  return nullptr;
}

Kept takenName() {
  std::filesystem::create_directory("/tmp/ddb.dptmp");
  return nullptr;
}

Kept rubbish() {
  writeFile(kDatabase, std::string(5000, 'x'));
  return nullptr;
}

Kept cutOff() {
  writeFile(kDatabase, healthyDatabase().substr(0, 30));
  return nullptr;
}

Kept oneByteTooMany() {
  writeFile(kDatabase, healthyDatabase() + "x");
  return nullptr;
}

// Zeros read as records without a key.
Kept zerosBehind() {
  Database().nextId("4").put(Device(3, "Siren").type("Siren").zwave(5)).put("note", "no device");
  writeFile(kDatabase, readFile(kDatabase) + std::string(100000, '\0'));
  return nullptr;
}

Kept linkToNowhere() {
  Database().nextId("4").put(Device(3, "Siren").type("Siren").zwave(5)).overwriteInRecord("3", 20, 7000);
  return nullptr;
}

Kept hugeBuckets() {
  writeFile(kDatabase, healthyDatabase().replace(32, 4, std::string("\xFF\xFF\xFF\x3F", 4)));
  return nullptr;
}

Kept idTwice() {
  Database()
      .nextId("5")
      .put(Device(3, "Siren").type("Siren").zwave(5))
      .put("4", Device(3, "Twin").type("Siren").zwave(6).bytes());
  return nullptr;
}

Kept idsDiffer() {
  Database().nextId("5").put("4", Device(3, "Twin").type("Siren").zwave(6).bytes());
  return nullptr;
}

Kept oldNextId() {
  Database().nextId("3").put(Device(3, "Siren").type("Siren").zwave(5));
  return nullptr;
}

Kept noNumber() {
  Database().nextId("many").put(Device(3, "Siren").type("Siren").zwave(5));
  return nullptr;
}

Kept noNextId() {
  Database().drop("NextDevid").put(Device(3, "Siren").type("Siren").zwave(5));
  return nullptr;
}

Kept noRadio() {
  Database().nextId("5").put(Device(3, "Siren\x1b[2J").type("Siren"));
  return nullptr;
}

Kept sameNode() {
  Database().nextId("5").put(Device(3, "Siren").type("Siren").zwave(5)).put(Device(4, "Plug").type("Siren").zwave(261));
  return nullptr;
}

// A ZigBee device that leaves would be taken for the Z-Wave device.
Kept sameZigbeeAddress() {
  Device plug(4, "Plug");
  plug.type("Siren").zwave(6).record().zigbeeAddress = 0x1234;
  Database().nextId("5").put(Device(3, "Siren").type("Siren").zigbee(0x1234)).put(plug);
  return nullptr;
}

Kept unknownType() {
  Database().nextId("5").put(Device(3, "Siren").type("Sirene").zwave(5));
  return nullptr;
}

Kept noUser() {
  Database().nextId("5").put(Device(3, "Lamp").type("HueLamp").ip()).index(3, 1, "02a1b2fffe0c0001");
  return nullptr;
}

Kept ofTomorrow() {
  constexpr std::time_t kDay = std::time_t{24} * 60 * 60;
  const timespec times[] = {{std::time(nullptr) + kDay, 0}, {std::time(nullptr) + kDay, 0}};
  EXPECT_EQ(utimensat(AT_FDCWD, kDatabase, times, 0), 0);
  return nullptr;
}

const BrokenRouter kBrokenDatabases[] = {
    {"Missing", missing, {"database"}, "/tmp/ddb: No such file or directory."},
    {"Folder", folder, {"database"}, "A folder stands in the device database's place."},
    {"LinkToNothing", linkToNothing, {"database"}, "The device database is a link to nothing."},
    {"Pipe", pipeFile, {"database"}, "The device database is no regular file."},
    {"Foreign", foreign, {"database-owner"}, "the HA server or a front end runs as user ", {}, {}, {}, Others::kMore},
    {"Protected",
     protectedByKernel,
     {"database-owner", "database-protection"},
     "fs.protected_regular is 2",
     {},
     {},
     {},
     Others::kMore},
    {"WritableByAll", writableByAll, {"database-mode"}, "/tmp/ddb has mode 0666."},
    {"Busy", running, {"database-access", "database-damage"}, "Text file busy."},
    {"Locked", locked, {"database-lock"}, "doctor-test (process "},
    {"NoRoom", smallFileSystem, {"database-room"}, " bytes are free in its file system", {"--db", "/tmp/small/ddb"}},
    {"NameOfRepairTaken", takenName, {"database-repair"}, "/tmp/ddb.dptmp belongs to user "},
    {"Rubbish", rubbish, {"database-damage"}, "it does not begin as a device database does"},
    {"CutOff", cutOff, {"database-damage"}, "it ends within its header"},
    {"OneByteTooMany",
     oneByteTooMany,
     {"database-addresses", "database-damage", "database-next-id"},
     "its header says "},
    {"ZerosBehind", zerosBehind, {"database-damage"}, "; 1 device can still be read.", {}, {}, {}, Others::kMore},
    {"LinkToNowhere", linkToNowhere, {"database-damage"}, "the links of its records are not in order"},
    {"HugeBuckets", hugeBuckets, {"database-damage"}, "its header claims 1073741823 buckets"},
    {"IdTwice", idTwice, {"database-ids"}, "both say id 3"},
    {"IdsDiffer", idsDiffer, {"database-ids"}, "device 4 (Twin) says id 3."},
    {"OldNextId", oldNextId, {"database-next-id"}, "NextDevid is \"3\", and there is a device 3."},
    {"NoNumber", noNumber, {"database-next-id"}, "NextDevid is \"many\", and there is a device 3."},
    {"NoNextId", noNextId, {"database-next-id"}, "there is no record NextDevid."},
    {"NoRadio", noRadio, {"database-radios"}, "device 3 (Siren?[2J) has radio kind 0 and no address that can leave."},
    {"SameNode", sameNode, {"database-addresses"}, "Z-Wave node 5 is device "},
    {"SameZigbeeAddressElsewhere",
     sameZigbeeAddress,
     {"database-addresses"},
     "ZigBee address 0x1234 is device 3 (Siren), and stands in device 4 (Plug), which is of another radio."},
    {"UnknownType", unknownType, {"database-types"}, "device 3 (Siren) is a \"Sirene\"."},
    {"NoHueUser", noUser, {"hue-users"}, "device 3 (Lamp) has no user."},
    {"OfTomorrow", ofTomorrow, {"clock"}, "The clock was set back."},
};

class BrokenDatabase : public testing::TestWithParam<BrokenRouter> {};

TEST_P(BrokenDatabase, IsFound) { expectFindings(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Doctor, BrokenDatabase, testing::ValuesIn(kBrokenDatabases),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace tembra::test
