// Databases as they should be and as they should not, seen by `devices` and before an operation.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <filesystem>
#include <ostream>

#include "support/files.h"
#include "support/program.h"
#include "support/sim_router.h"
#include "support/udp_listener.h"

namespace tembra::test {
namespace {

TEST(Devices, AreListedWithWhatTheDatabaseTellsOfThem) {
  Database()
      .nextId("8")
      .put("Version", "3")
      .put(Device(7, "Lamp\x1b[2J").type("HueLamp").ip())
      .put(Device(2, "Tür").type("Siren").zwave(5))
      .put("2.1", std::string(92, 'x'))
      .put("2.2", std::string(92, 'x'))
      .put(Device(6, "Button").type("KeyFob").zigbee(0xABC))
      .put("5", std::string("\5\0\0\0short", 9))
      .put(Device(8, "\x9b\xc2\x9b\xe2\x80\xaemoor").type("HueLamp").ip());
  const std::string before = readFile(kDatabase);
  const Ended devices = runAssoc({"devices"});
  EXPECT_EQ(devices.status, 0) << devices.errors;
  EXPECT_EQ(devices.output,
            "Id  Name      Type     Radio   Address  Values\n"
            "2   Tür       Siren    Z-Wave  5        2\n"
            "5   short              other            0\n"
            "6   Button    KeyFob   ZigBee  0x0abc   0\n"
            "7   Lamp?[2J  HueLamp  IP               0\n"
            "8   ???moor   HueLamp  IP               0\n");
  EXPECT_EQ(readFile(kDatabase), before);
}

TEST(Devices, AreJsonObjectsInAscii) {
  Database().put(Device(2, "T\xFFr \"x\" \xc3\xbc\xc2\x9b\x7f").type("Siren").zwave(5));
  EXPECT_EQ(runAssoc({"devices", "--json"}).output,
            "{\"id\":2,\"name\":\"T\\ufffdr \\\"x\\\" "
            "\\u00fc\\u009b\\u007f\",\"type\":{\"number\":42,\"name\":\"Siren\"},\"radio\":\"Z-Wave\",\"address\":5,"
            "\"values\":0}\n");
}

TEST(Devices, WithoutARadioHaveNoAddressForPrograms) {
  Database().put(Device(7, "Lamp").type("HueLamp").ip()).put("5", std::string("\5\0\0\0short", 9));
  const std::vector<std::string> lines = kit::linesOf(runAssoc({"devices", "--json"}).output);
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_NE(lines[0].find(R"("radio":null,"address":null)"), std::string::npos) << lines[0];
  EXPECT_NE(lines[1].find(R"("radio":"IP","address":null)"), std::string::npos) << lines[1];
}

void nothing() {}
void folder() { std::filesystem::create_directory(kDatabase); }
void rubbish() { writeFile(kDatabase, std::string(5000, 'x')); }
void oneByte() { writeFile(kDatabase, "x"); }
void cutInTheHeader() { writeFile(kDatabase, healthyDatabase().substr(0, 30)); }
void cutInTheMiddle() { writeFile(kDatabase, healthyDatabase().substr(0, healthyDatabase().size() / 2)); }
void oneByteTooMany() { writeFile(kDatabase, healthyDatabase() + "x"); }
void hugeBuckets() { writeFile(kDatabase, healthyDatabase().replace(32, 4, std::string("\xFF\xFF\xFF\x3F", 4))); }
void noBuckets() { writeFile(kDatabase, healthyDatabase().replace(32, 4, std::string(4, '\0'))); }

void namedPipe() { EXPECT_EQ(mkfifo(kDatabase, 0600), 0); }

void socketFile() {
  const int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un place{};
  place.sun_family = AF_UNIX;
  std::string(kDatabase).copy(place.sun_path, sizeof place.sun_path);
  EXPECT_EQ(bind(descriptor, reinterpret_cast<const sockaddr*>(&place), sizeof place), 0);
  close(descriptor);
}

struct DatabaseCase {
  const char* name;
  void (*make)();
  const char* sentence;
};

void PrintTo(const DatabaseCase& row, std::ostream* out) { *out << row.name; }

const DatabaseCase kUnreadable[] = {
    {"Missing", nothing, "there is no device database yet at /tmp/ddb: the home-automation server creates it."},
    {"Folder", folder, "/tmp/ddb is a folder, not a device database."},
    {"Socket", socketFile, "/tmp/ddb is no regular file, not a device database."},
    {"Pipe", namedPipe, "/tmp/ddb is no regular file, not a device database."},
    {"Rubbish", rubbish, "the device database /tmp/ddb is damaged, or none"},
    {"OneByte", oneByte, "the device database /tmp/ddb is damaged, or none"},
    {"CutInTheHeader", cutInTheHeader, "the device database /tmp/ddb is damaged, or none"},
    {"CutInTheMiddle", cutInTheMiddle, "the device database /tmp/ddb is damaged, or none"},
    {"OneByteTooMany", oneByteTooMany, "the device database /tmp/ddb is damaged, or none"},
    {"HugeBuckets", hugeBuckets, "the device database /tmp/ddb is damaged, or none"},
    {"NoBuckets", noBuckets, "the device database /tmp/ddb is damaged, or none"},
};

class UnreadableDatabase : public testing::TestWithParam<DatabaseCase> {};

TEST_P(UnreadableDatabase, IsToldInOneSentenceAndLeftAlone) {
  GetParam().make();
  const bool existed = std::filesystem::exists(kDatabase);
  const Ended devices = runAssoc({"devices"});
  EXPECT_EQ(devices.status, 1);
  EXPECT_EQ(devices.errors.find("tembra-assoc: " + std::string(GetParam().sentence)), 0U) << devices.errors;
  EXPECT_EQ(std::filesystem::exists(kDatabase), existed);
}

INSTANTIATE_TEST_SUITE_P(Devices, UnreadableDatabase, testing::ValuesIn(kUnreadable),
                         [](const auto& test) { return test.param.name; });

TEST(Devices, OfALockedDatabaseAreToldToBeLocked) {
  const OpenDatabase lock;
  const Ended devices = runAssoc({"devices"});
  EXPECT_EQ(devices.status, 1);
  EXPECT_EQ(devices.sentence(), "tembra-assoc: the device database /tmp/ddb stays locked by another process.");
}

TEST(Devices, OfAnEmptyDatabaseAreAHeading) {
  Database().create();
  EXPECT_EQ(runAssoc({"devices"}).output, "Id  Name  Type  Radio  Address  Values\n");
}

TEST(Devices, OfAnEmptyFileAreAHeading) {
  writeFile(kDatabase, "");
  const Ended devices = runAssoc({"devices"});
  EXPECT_EQ(devices.status, 0) << devices.errors;
  EXPECT_EQ(devices.output, "Id  Name  Type  Radio  Address  Values\n");
}

// The library would delete these, or wait for them without end.
const DatabaseCase kRefused[] = {
    {"Folder", folder, "The device list cannot be read (Is a directory)."},
    {"Socket", socketFile, "The device list cannot be read"},
    {"Pipe", namedPipe, "The device list cannot be read"},
};

class RefusedDatabase : public testing::TestWithParam<DatabaseCase> {};

TEST_P(RefusedDatabase, EndsAnAddBeforeItBegins) {
  const UdpListener zwave("127.255.255.254", 8888);
  const UdpListener home("127.255.255.1", 9999);
  GetParam().make();
  const Ended added = runAssoc({"add"});
  EXPECT_EQ(added.status, 1);
  EXPECT_NE(added.sentence().find(GetParam().sentence), std::string::npos) << added.errors;
  EXPECT_EQ(zwave.take(), std::nullopt);
  EXPECT_TRUE(std::filesystem::exists(kDatabase));
}

INSTANTIATE_TEST_SUITE_P(Add, RefusedDatabase, testing::ValuesIn(kRefused),
                         [](const auto& test) { return test.param.name; });

// As any file that the system refuses to open for writing; of those only this one stops root.
TEST(Add, IsRefusedWhereTheLibraryWouldDeleteTheDatabase) {
  const UdpListener zwave("127.255.255.254", 8888);
  const UdpListener home("127.255.255.1", 9999);
  std::filesystem::copy_file("/bin/sleep", kDatabase);
  const Program running({kDatabase, "60"});
  const Ended added = runAssoc({"add"});
  EXPECT_EQ(added.status, 1);
  EXPECT_NE(added.sentence().find("The device list cannot be read (Text file busy)."), std::string::npos)
      << added.errors;
  EXPECT_TRUE(std::filesystem::exists(kDatabase));
}

TEST(Add, IsRefusedWhileTheDatabaseStaysLocked) {
  const UdpListener zwave("127.255.255.254", 8888);
  const UdpListener home("127.255.255.1", 9999);
  const OpenDatabase lock;
  const Ended added = runAssoc({"add"});
  EXPECT_EQ(added.status, 1);
  EXPECT_NE(added.sentence().find("The device list cannot be read (Resource temporarily unavailable)."),
            std::string::npos)
      << added.errors;
  EXPECT_EQ(zwave.take(), std::nullopt);
}

// These the library makes good: the user is told, and the add goes on. It goes on without a file, too: add_test.cpp.
const DatabaseCase kMended[] = {
    {"Rubbish", rubbish, "The device list is damaged. Devices may be missing, and the library may repair it"},
    {"CutInTheHeader", cutInTheHeader,
     "The device list is damaged. Devices may be missing, and the library may repair it"},
};

class MendedDatabase : public testing::TestWithParam<DatabaseCase> {};

TEST_P(MendedDatabase, IsToldBeforeAnAdd) {
  SimRouter router;
  std::filesystem::remove(kDatabase);
  GetParam().make();
  const Ended added = router.add("siren", {});
  EXPECT_NE(added.output.find("Found a device"), std::string::npos) << added.errors;
  EXPECT_NE(added.errors.find(GetParam().sentence), std::string::npos) << added.errors;
}

INSTANTIATE_TEST_SUITE_P(Add, MendedDatabase, testing::ValuesIn(kMended),
                         [](const auto& test) { return test.param.name; });

// A file of another user: one that root gives away, or else one that belongs to root.
std::string foreignFile() {
  Database().create();
  return chown(kDatabase, 12345, 12345) == 0 ? kDatabase : "/etc/passwd";
}

// The same for a link, whose target would be repaired or created.
std::string foreignLink() {
  std::filesystem::create_symlink("/tmp/elsewhere", kDatabase);
  return lchown(kDatabase, 12345, 12345) == 0 ? kDatabase : "/etc/mtab";
}

TEST(Add, IsRefusedWhereTheDatabaseIsALinkOfAnotherUser) {
  const UdpListener home("127.255.255.1", 9999);
  const UdpListener zwave("127.255.255.254", 8888);
  const std::string link = foreignLink();
  const Ended added = runAssoc({"add", "--db", link});
  EXPECT_EQ(added.status, 1);
  EXPECT_NE(added.sentence().find("The device list cannot be read"), std::string::npos) << added.errors;
  EXPECT_FALSE(std::filesystem::exists("/tmp/elsewhere"));
}

// In strict mode neither the library nor the program itself reads a file that others may write.
TEST(StrictMode, LeavesADatabaseOfOthersAlone) {
  const UdpListener home("127.255.255.1", 9999);
  const UdpListener zwave("127.255.255.254", 8888);
  Database().create();
  chmod(kDatabase, 0664);
  for (const char* command : {"devices", "add"}) {
    const Ended refused = Program(assocCommand({command}), kit::Settings{{"TEMBRA_STRICT", "1"}}).end();
    EXPECT_EQ(refused.status, 1);
    EXPECT_NE(refused.sentence().find("cannot be read"), std::string::npos) << refused.errors;
  }
  EXPECT_EQ(runAssoc({"devices"}).status, 0);
}

TEST(Add, WarnsOfADatabaseThatBelongsToAnotherUser) {
  const UdpListener home("127.255.255.1", 9999);
  const UdpListener zwave("127.255.255.254", 8888);
  Program program(assocCommand({"add", "--db", foreignFile()}), Clock::kFast);
  const Ended added = program.end();
  EXPECT_EQ(added.status, 1) << "nobody answers";
  EXPECT_NE(added.errors.find("belongs to another user"), std::string::npos) << added.errors;
}

}  // namespace
}  // namespace tembra::test
