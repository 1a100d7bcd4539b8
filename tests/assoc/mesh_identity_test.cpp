// Which router of a mesh this is.
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "kit/router.h"

using kit::Bytes;
using kit::Call;
using kit::lines;
using kit::Router;

namespace {

constexpr unsigned char kUntouched = 0x5A;
constexpr int kAnyResult = -2;  // a command that is cut off in the middle of its output may die of it

struct Answer {
  const char* script;
  const char* text;
  int result;  // of closing the pipe
  int number;
};

constexpr Answer kAnswers[] = {
    {"echo 3", "3\n", 0, 3},
    {"printf 3", "3", 0, 3},
    {"echo 12345678", "12345678\n", 0, 12345678},
    {"echo 123456789", "123456789", 0, 123456789},
    {"echo 1234567890123", "123456789", 0, 123456789},
    {"head -c 300000 /dev/zero | tr '\\0' 7; echo", "777777777", kAnyResult, 777777777},
    {"echo -7", "-7\n", 0, -7},
    {"echo '  42 x'", "  42 x\n", 0, 42},
    {"echo words", "words\n", 0, 0},
    {"echo; echo 5", "\n", kAnyResult, 0},
    {"true", "", 0, 0},
    {"exit 3", "", 3 << 8, 0},
    {"echo 8; exit 1", "8\n", 1 << 8, 8},
    {R"(echo "$1$2" | cut -c1-8)", "2860Mesh\n", 0, 2860},
};

}  // namespace

TEST(MeshIdTest, IsOneShortLineOfTheSettingsCommand) {
  Router router;
  for (const Answer& answer : kAnswers) {
    router.nvram().answerWith(answer.script);
    char out[16];
    std::memset(out, kUntouched, sizeof out);
    const int result = GetMeshId(out);
    EXPECT_STREQ(out, answer.text) << answer.script;
    EXPECT_TRUE(std::all_of(out + 10, std::end(out), [](char byte) { return byte == kUntouched; })) << answer.script;
    EXPECT_EQ(GetMeshId(), answer.number) << answer.script;
    EXPECT_EQ(result, answer.result == kAnyResult ? result : answer.result) << answer.script;
  }
}

TEST(MeshIdTest, AMissingCommandIsNoId) {
  Router router;
  router.nvram().remove();
  char out[10] = "old";
  EXPECT_EQ(GetMeshId(out), 127 << 8);
  EXPECT_STREQ(out, "");
  EXPECT_EQ(GetMeshId(), 0);
}

TEST(MeshIdTest, ACommandThatCannotBeStartedIsNoId) {
  Router router;
  char out[10] = "old";
  router.fail(Call::kPopen, EMFILE, 2);
  EXPECT_EQ(GetMeshId(out), -1);
  EXPECT_STREQ(out, "");
  EXPECT_EQ(GetMeshId(), 0);
}

TEST(MeshIdTest, TheCommandIsRunOnce) {
  Router router;
  router.watch(kit::kWatchConnection);
  GetMeshId();
  EXPECT_EQ(router.takeTrace(), lines({"popen r nvram_get 2860 MeshSlaveID"}));
}

TEST(MeshIdTest, IsUnknownAtFirst) {
  const Router router;
  EXPECT_EQ(local_meshID, -1);
  EXPECT_EQ(assoc_meshID, -1);
}

TEST(MeshIdTest, OwnsTheAssociationFromTheFirstAnswerToTheClosing) {
  Router router;
  router.connect(&TembraAssociation::LCDAssocInit);
  kit::Peer* const servers[] = {&router.zwave(), &router.zigbee(), &router.hue(), &router.nest()};
  for (kit::Peer* server : servers) {
    EXPECT_EQ(local_meshID, 3);
    EXPECT_EQ(assoc_meshID, -1);
    router.ha().send(Bytes(4, 1));
    router.from("127.0.0.1").send(Bytes(4, 1));
    EXPECT_EQ(assoc_meshID, -1) << "these own nothing";
    server->send(Bytes(4, 1));
    EXPECT_EQ(assoc_meshID, 3);
    router.close();
    EXPECT_EQ(local_meshID, 3);
    EXPECT_EQ(assoc_meshID, -1);
    ASSERT_EQ(router.open(), 0);
  }
}

TEST(MeshIdTest, IsReadAgainAtEachOpening) {
  Router router;
  router.connect();
  const struct {
    const char* script;
    int id;
  } kRows[] = {{"echo 5", 5}, {"true", 0}, {"echo 6", 6}, {"exit 1", 0}};
  for (const auto& row : kRows) {
    router.close();
    router.nvram().answerWith(row.script);
    ASSERT_EQ(router.open(), 0);
    EXPECT_EQ(local_meshID, row.id) << row.script;
  }
}

TEST(MeshTablesTest, HoldTheNamesPaddedWithZeros) {
  const Router router;
  constexpr const char* kNames[] = {"ParticipantPosID",
                                    "Type",
                                    "BRMACAddress",
                                    "WIFIMACAddress",
                                    "WIFI5GMACAddress",
                                    "WANMACAddress",
                                    "LANMACAddress",
                                    "REMACAddress",
                                    "REMAC5GAddress",
                                    "AssociatedMACAddress",
                                    "AssociatedMeshID",
                                    "Is5GMesh",
                                    "ParticipantName",
                                    "ParticipantLocation",
                                    "ParticipantMasterName",
                                    "Model",
                                    "IpAddress",
                                    "MasterIpAddress",
                                    "MeshMode",
                                    "ParticipantUniqueId",
                                    "ParticipantUniqueName",
                                    "IsParticipant",
                                    "IsActive",
                                    "HopCount",
                                    "ParticipantSideMasterRSSI",
                                    "MasterSideParticipantRSSI",
                                    "MasterSSID",
                                    "MasterPassword",
                                    "MasterChannel",
                                    "MasterAuthMode",
                                    "MasterEncrypType",
                                    "ParticipantClientCount",
                                    "IsHACapable",
                                    "HADeviceCount",
                                    "LastKnownInternetStatus",
                                    "ZigbeePanID",
                                    "NULL"};
  ASSERT_EQ(std::size(kNames), 37U);
  for (std::size_t row = 0; row < std::size(kNames); ++row) {
    char expected[32] = {};
    std::strcpy(expected, kNames[row]);
    EXPECT_EQ(std::memcmp(meshTagNames[row], expected, sizeof expected), 0) << kNames[row];
  }
  EXPECT_TRUE(std::all_of(std::begin(meshRx_packet), std::end(meshRx_packet), [](unsigned char c) { return c == 0; }));
}
