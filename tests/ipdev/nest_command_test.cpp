// Commands to the Nest server, and whether an account is linked.
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include "capabilities.h"
#include "kit/router.h"
#include "wire.h"

using kit::Bytes;
using kit::lines;
using kit::Router;

namespace fs = std::filesystem;

namespace {

constexpr const char* kAuthcode = "/tmp/Authcode";

std::ptrdiff_t openDescriptors() {
  const fs::directory_iterator each("/proc/self/fd");
  return std::distance(begin(each), end(each));
}

// Expects one command of this content, from the moment it is sent to what is marked afterwards.
void expectCommand(Router& router, const Bytes& datagram, const std::string& commandType) {
  EXPECT_EQ(router.takeTrace(), lines({"send nest 256"})) << "nothing else, no log line either";
  const auto sends = router.takeSends();
  ASSERT_EQ(sends.size(), 1U);
  EXPECT_EQ(sends[0].bytes, datagram);
  EXPECT_EQ(router.nest().receive(), datagram);
  EXPECT_EQ(sends[0].state, "state 5 idle 1 last 5 cancel 2 radio 4 cmdtype Before") << "the radio is marked first";
  EXPECT_EQ(router.state(), "state 5 idle 0 last 5 cancel 2 radio 4 cmdtype " + commandType);
}

void pretendAnOperationBefore(TembraAssociation& assoc) {
  assoc.assocState = ZW_ASSOC_QUERY;
  assoc.lastEventCode = 5;
  assoc.cancelTarget = 2;
  assoc.activeRadio = 2;
  idle = 1;
  std::strcpy(cmdtype, "Before");
}

}  // namespace

TEST(NestCommandTest, AddSendsTheText) {
  Router router;
  TembraAssociation& assoc = router.connect();
  char text[] = "c.AbCd1234";
  pretendAnOperationBefore(assoc);
  EXPECT_EQ(assoc.Nest_add(text), &idle);
  expectCommand(router, Wire(256).number(4, 100).text(8, text).all(), "AddIPDevice");
}

TEST(NestCommandTest, RemoveSendsNothingButItsNumber) {
  Router router;
  TembraAssociation& assoc = router.connect();
  char text[] = "of an earlier command";
  assoc.Nest_add(text);
  router.nest().receive();
  router.forget();
  pretendAnOperationBefore(assoc);
  EXPECT_EQ(assoc.Nest_remove(), &idle);
  expectCommand(router, Wire(256).number(4, 109).all(), "RemoveIPDevice");
}

TEST(NestCommandTest, TheTextIsCutAtTheDatagram) {
  Router router;
  TembraAssociation& assoc = router.connect();
  for (const std::size_t length : {0U, 1U, 246U, 247U, 248U, 249U, 5000U}) {
    std::string text(length, 'x');
    assoc.Nest_add(text.data());
    EXPECT_EQ(router.takeSends().at(0).bytes, Wire(256).number(4, 100).text(8, text.substr(0, 247)).all()) << length;
  }
  assoc.Nest_add(nullptr);
  EXPECT_EQ(router.takeSends().at(0).bytes, Wire(256).number(4, 100).all());
}

TEST(NestCommandTest, AFailedSendIsToldNobody) {
  Router router;
  TembraAssociation& assoc = router.connect();
  pretendAnOperationBefore(assoc);
  router.fail(kit::Call::Sendto, ENOBUFS);
  EXPECT_EQ(assoc.Nest_remove(), &idle);
  EXPECT_EQ(router.takeTrace(), lines({"send nest 256 -> ENOBUFS", "stderr sendto error: No buffer space available"}));
  EXPECT_EQ(router.state(), "state 5 idle 0 last 5 cancel 2 radio 4 cmdtype RemoveIPDevice");
}

TEST(NestCommandTest, ANamingInBetweenIsReportedAsNest) {
  Router router;
  TembraAssociation& assoc = router.connect();
  assoc.Nest_remove();
  router.forget();
  assoc.setDevType(DEVTYPE_SIREN);
  EXPECT_EQ(router.takeEvents().at(0).event.source, 4);
}

TEST(NestCheckTest, ACodeIsThereWhenItsFileCanBeRead) {
  Router router;
  TembraAssociation& assoc = router.assoc();
  EXPECT_EQ(assoc.Nest_checkExist(), 0);
  std::ofstream(kAuthcode).close();
  EXPECT_EQ(assoc.Nest_checkExist(), 1) << "an empty file";
  std::ofstream(kAuthcode) << "c.AbCd1234";
  EXPECT_EQ(assoc.Nest_checkExist(), 1);
  EXPECT_EQ(fs::file_size(kAuthcode), 10U) << "it stays as it is";
  fs::remove(kAuthcode);
  EXPECT_EQ(assoc.Nest_checkExist(), 0);
  fs::create_symlink("/tmp/nowhere", kAuthcode);
  EXPECT_EQ(assoc.Nest_checkExist(), 0) << "a link that leads nowhere";
  EXPECT_EQ(router.takeTrace(), "") << "nothing is sent, logged or printed";
}

// Any user can make one. An alarm ends a test that waits for a writer.
TEST(NestCheckTest, APipeHoldsNobody) {
  Router router;
  ASSERT_EQ(mkfifo(kAuthcode, 0666), 0);
  alarm(10);
  EXPECT_EQ(router.assoc().Nest_checkExist(), 1);
  fs::remove(kAuthcode);
  ASSERT_EQ(mkfifo("/tmp/pipe", 0666), 0);
  fs::create_symlink("/tmp/pipe", kAuthcode);
  EXPECT_EQ(router.assoc().Nest_checkExist(), 1);
  alarm(0);
}

// Opening a device sets it to work: a watchdog would restart the router. This folder stands for one: any opening shows.
TEST(NestCheckTest, WhatALinkLeadsToIsNotOpened) {
  Router router;
  fs::create_directory("/tmp/device");
  const int watch = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
  ASSERT_GE(inotify_add_watch(watch, "/tmp/device", IN_OPEN), 0);
  fs::create_symlink("/tmp/device", kAuthcode);
  EXPECT_EQ(router.assoc().Nest_checkExist(), 1);
  inotify_event opened{};
  EXPECT_EQ(read(watch, &opened, sizeof opened), -1);
  close(watch);
}

TEST(NestCheckTest, AFileThatCannotBeReadIsNoCode) {
  Router router;
  std::ofstream(kAuthcode) << "c.AbCd1234";
  fs::permissions(kAuthcode, fs::perms::none);
  const WithoutCapabilities ordinaryUser;
  EXPECT_EQ(router.assoc().Nest_checkExist(), 0);
  fs::permissions(kAuthcode, fs::perms::owner_read);
  EXPECT_EQ(router.assoc().Nest_checkExist(), 1);
}

TEST(NestCheckTest, NoDescriptorStaysOpen) {
  Router router;
  std::ofstream(kAuthcode).close();
  const auto before = openDescriptors();
  for (int i = 0; i < 20; ++i) EXPECT_EQ(router.assoc().Nest_checkExist(), 1);
  EXPECT_EQ(openDescriptors(), before);
}
