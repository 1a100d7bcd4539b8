// The flight recorder in a file beside the socket.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <tembra/watch.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "history.h"
#include "watch/failure_file.h"
#include "watch_kit.h"

namespace tembra::test {
namespace {

class FailureFile : public ::testing::Test {
 protected:
  [[nodiscard]] std::string path() const { return place_.socket() + TEMBRA_FAILURE_SUFFIX; }
  [[nodiscard]] std::string text() const {
    std::ostringstream text;
    text << std::ifstream(path()).rdbuf();
    return text.str();
  }

  static std::string now() {
    std::string text(TEMBRA_HISTORY_SIZE, '\0');
    text.resize(frontend::history().write(text.data(), text.size()));
    return text;
  }

  /// With something in the flight recorder, as there always is when an operation fails.
  static void keepFailure(const std::string& path) {
    frontend::history().call("add", {}, 0);
    frontend::keepFailure(path, frontend::history());
  }

  Place place_;
};

TEST_F(FailureFile, HoldsTheFlightRecorderOfTheLastFailure) {
  keepFailure(place_.socket());
  const std::string first = now();
  EXPECT_EQ(text(), first);
  for (int i = 0; i < 1000; ++i) frontend::history().event(R"({"event":"ended"})");
  EXPECT_EQ(text(), first);
  keepFailure(place_.socket());
  EXPECT_EQ(text(), now());
  EXPECT_GT(text().size(), 64000U);
}

TEST_F(FailureFile, BelongsToThoseWhoMayWatch) {
  std::filesystem::create_directory(place_.folder());
  if (chown(place_.folder().c_str(), 0, 12) != 0) GTEST_SKIP() << "there is no other group here";
  keepFailure(place_.socket());
  struct stat status {};
  ASSERT_EQ(stat(path().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0640U);
  EXPECT_EQ(status.st_gid, 12U);
}

TEST_F(FailureFile, IsNotWrittenWhereEverybodyMayWrite) {
  std::filesystem::create_directory(place_.folder());
  chmod(place_.folder().c_str(), 0777);
  keepFailure(place_.socket());
  EXPECT_TRUE(std::filesystem::is_empty(place_.folder()));
}

TEST_F(FailureFile, FollowsNoLinkAndLeavesNoDraft) {
  std::filesystem::create_directory(place_.folder());
  const std::string elsewhere = place_.top() + "/elsewhere";
  std::ofstream(elsewhere) << "precious";
  std::filesystem::create_symlink(elsewhere, path());
  const std::string draft = path() + '.' + std::to_string(getpid()) + ".new";
  std::filesystem::create_symlink(elsewhere, draft);
  keepFailure(place_.socket());
  EXPECT_EQ(text(), now());
  EXPECT_FALSE(std::filesystem::is_symlink(path()));
  EXPECT_EQ(std::filesystem::file_size(elsewhere), 8U);
  EXPECT_FALSE(std::filesystem::exists(std::filesystem::symlink_status(draft)));
}

// Without memory the recorder tells nothing.
TEST_F(FailureFile, StaysWhenTheRecorderTellsNothing) {
  std::filesystem::create_directory(place_.folder());
  std::ofstream(path()) << "the last failure";
  frontend::keepFailure(place_.socket(), frontend::History());
  EXPECT_EQ(text(), "the last failure");
}

TEST_F(FailureFile, NeedsAnAbsolutePath) {
  std::filesystem::current_path(place_.top());
  keepFailure("front-end");
  keepFailure("served/front-end");
  EXPECT_TRUE(std::filesystem::is_empty(place_.top()));
  std::filesystem::current_path("/");
}

}  // namespace
}  // namespace tembra::test
