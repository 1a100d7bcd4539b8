// Whether a Nest account is linked.
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "capabilities.h"
#include "kit/router_test.h"

namespace fs = std::filesystem;

namespace {

using NestCheckTest = kit::RouterTest;

constexpr const char* kAuthcode = "/tmp/Authcode";

std::ptrdiff_t openDescriptors() {
  const fs::directory_iterator each("/proc/self/fd");
  return std::distance(begin(each), end(each));
}

}  // namespace

TEST_F(NestCheckTest, ACodeIsThereWhenItsFileCanBeRead) {
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
TEST_F(NestCheckTest, APipeHoldsNobody) {
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
TEST_F(NestCheckTest, WhatALinkLeadsToIsNotOpened) {
  fs::create_directory("/tmp/device");
  const int watch = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
  ASSERT_GE(inotify_add_watch(watch, "/tmp/device", IN_OPEN), 0);
  fs::create_symlink("/tmp/device", kAuthcode);
  EXPECT_EQ(router.assoc().Nest_checkExist(), 1);
  inotify_event opened{};
  EXPECT_EQ(read(watch, &opened, sizeof opened), -1);
  close(watch);
}

TEST_F(NestCheckTest, AFileThatCannotBeReadIsNoCode) {
  std::ofstream(kAuthcode) << "c.AbCd1234";
  fs::permissions(kAuthcode, fs::perms::none);
  const WithoutCapabilities ordinaryUser;
  EXPECT_EQ(router.assoc().Nest_checkExist(), 0);
  fs::permissions(kAuthcode, fs::perms::owner_read);
  EXPECT_EQ(router.assoc().Nest_checkExist(), 1);
}

TEST_F(NestCheckTest, NoDescriptorStaysOpen) {
  std::ofstream(kAuthcode).close();
  const auto before = openDescriptors();
  for (int i = 0; i < 20; ++i) EXPECT_EQ(router.assoc().Nest_checkExist(), 1);
  EXPECT_EQ(openDescriptors(), before);
}
