// The log of the stand-ins, as a program that logs sees it: where lines go, which ones, and in what form.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "kit/program.h"
#include "kit/text.h"

namespace {

using kit::Ended;
using kit::linesOf;
using kit::Program;
using kit::Settings;
using Lines = std::vector<std::string>;

Ended logLines(const std::string& what, const Settings& settings) { return Program({LOG_LINES, what}, settings).end(); }

// "2026-01-31 12:00:00.000 [<process>:<thread>] " with any digits.
bool isStamped(const std::string& line) {
  constexpr std::string_view shape = "0000-00-00 00:00:00.000 [";
  std::string head = line.substr(0, shape.size());
  std::replace_if(
      head.begin(), head.end(), [](unsigned char c) { return std::isdigit(c) != 0; }, '0');
  return head == shape && line.find("] ") != std::string::npos;
}

// Level and text of each line; a line without its stamp stays as it is.
Lines messages(const std::string& written) {
  Lines lines = linesOf(written);
  for (std::string& line : lines) {
    if (isStamped(line)) line.erase(0, line.find("] ") + 2);
  }
  return lines;
}

struct LevelCase {
  const char* level;  // TEMBRA_LOG_LEVEL
  Lines written;      // of one line at each level
};

const std::vector<LevelCase> kLevels = {
    {"", {"warning: said at 1", "error: said at 2"}},
    {"detail", {"progress: said at 0", "warning: said at 1", "error: said at 2", "detail: said at 3"}},
    {"progress", {"progress: said at 0", "warning: said at 1", "error: said at 2"}},
    {"warning", {"warning: said at 1", "error: said at 2"}},
    {"error", {"error: said at 2"}},
};

TEST(Logger, WritesTheLinesOfTheLevelAndAboveToStandardError) {
  for (const char* target : {"", "stderr"}) {
    for (const LevelCase& row : kLevels) {
      const Ended outcome = logLines("every-level", {{"TEMBRA_LOG", target}, {"TEMBRA_LOG_LEVEL", row.level}});
      EXPECT_EQ(messages(outcome.errors), row.written) << target << " " << row.level;
      EXPECT_EQ(outcome.output, "");
    }
  }
}

TEST(Logger, WithoutSettingsWritesWarningsAndErrorsToStandardError) {
  const Ended outcome = logLines("every-level", {});
  EXPECT_EQ(messages(outcome.errors), (Lines{"warning: said at 1", "error: said at 2"}));
  EXPECT_EQ(outcome.output, "");
}

TEST(Logger, AppendsTheSameLinesToAFile) {
  const std::string path = "/tmp/log";
  Lines expected;
  for (const LevelCase& row : kLevels) {
    const Ended outcome = logLines("every-level", {{"TEMBRA_LOG", path}, {"TEMBRA_LOG_LEVEL", row.level}});
    EXPECT_EQ(outcome.errors, "");
    expected.insert(expected.end(), row.written.begin(), row.written.end());
    EXPECT_EQ(messages(kit::readFile(path)), expected) << row.level;
  }
}

TEST(Logger, GivesTheSystemLogThePriorityAndThePlainText) {
  const Ended outcome = logLines("every-level", {{"TEMBRA_LOG", "syslog"}, {"TEMBRA_LOG_LEVEL", "detail"}});
  EXPECT_EQ(linesOf(outcome.output),
            (Lines{"syslog 6 said at 0", "syslog 4 said at 1", "syslog 3 said at 2", "syslog 7 said at 3"}));
  EXPECT_EQ(outcome.errors, "");
}

TEST(Logger, SwitchedOffWritesNothing) {
  for (const LevelCase& row : kLevels) {
    const Ended outcome = logLines("every-level", {{"TEMBRA_LOG", "off"}, {"TEMBRA_LOG_LEVEL", row.level}});
    EXPECT_EQ(outcome.errors + outcome.output, "") << row.level;
    EXPECT_EQ(outcome.status, 0);
  }
}

TEST(Logger, SaysOnceThatALevelIsUnknownAndTakesWarning) {
  const Ended outcome = logLines("every-level", {{"TEMBRA_LOG_LEVEL", "Loud"}});
  EXPECT_EQ(messages(outcome.errors),
            (Lines{"tembra log: TEMBRA_LOG_LEVEL must be detail, progress, warning or error, not \"Loud\"",
                   "warning: said at 1", "error: said at 2"}));
}

TEST(Logger, SaysOnceThatAFileCannotBeWrittenAndTakesStandardError) {
  const std::string folder = testing::TempDir();
  const Ended outcome = logLines("every-level", {{"TEMBRA_LOG", folder}});
  EXPECT_EQ(messages(outcome.errors),
            (Lines{"tembra log: cannot write to " + folder + ": Is a directory; logging to standard error instead",
                   "warning: said at 1", "error: said at 2"}));
  EXPECT_EQ(outcome.status, 0);
}

// In a folder that others may write, a link can lead to any file.
TEST(Logger, FollowsNoLinkToAFile) {
  const std::string link = "/tmp/link";
  const std::string file = "/tmp/file";
  std::filesystem::create_symlink(file, link);
  const Ended ended = logLines("every-level", {{"TEMBRA_LOG", link}});
  EXPECT_EQ(messages(ended.errors),
            (Lines{"tembra log: cannot write to " + link +
                       ": it is a link, which is not followed; logging to standard error instead",
                   "warning: said at 1", "error: said at 2"}));
  EXPECT_FALSE(std::filesystem::exists(file));
}

// Else its user would have a file of another user's written.
TEST(Logger, TakesNoSettingsInAProgramWithOtherRights) {
  const std::string path = "/tmp/log";
  const Ended ended = logLines("other-rights", {{"TEMBRA_LOG", path}, {"TEMBRA_LOG_LEVEL", "error"}});
  EXPECT_EQ(messages(ended.errors), (Lines{"warning: said at 1", "error: said at 2"}));
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(Logger, MakesNoFolderForAFile) {
  const std::string folder = "/tmp/no-folder";
  const Ended outcome = logLines("every-level", {{"TEMBRA_LOG", folder + "/log"}});
  EXPECT_EQ(messages(outcome.errors).size(), 3U);
  EXPECT_FALSE(std::ifstream(folder).good());
}

TEST(Logger, WritesOneLineWhateverTheTextHolds) {
  const Ended outcome = logLines("odd-texts", {});
  EXPECT_EQ(messages(outcome.errors),
            (Lines{"error: ", "error: ", "error: ends", "error: begins", "error: one two  three", "error: %s %n {} {0}",
                   "error: [31mred tab", "error:  blanks stay ", "error: caf\xc3\xa9", "error:   3m moor",
                   "error: (no text)", "error: " + std::string(5000, 'x')}));
}

TEST(Logger, TakesUnknownLevelsForErrors) {
  const Ended outcome = logLines("odd-levels", {{"TEMBRA_LOG_LEVEL", "error"}});
  EXPECT_EQ(messages(outcome.errors), (Lines{"error: -2147483648", "error: -1", "error: 4", "error: 2147483647"}));
}

TEST(Logger, KeepsTheLinesOfManyThreadsWholeAndInEachThreadsOrder) {
  const std::string path = "/tmp/threads";
  const Ended outcome = logLines("threads", {{"TEMBRA_LOG", path}});
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
  const Lines lines = messages(kit::readFile(path));
  EXPECT_EQ(lines.size(), 8U * 250U);
  std::map<std::string, int> next;
  for (const std::string& line : lines) {
    const std::string thread = line.substr(0, line.find(" line "));
    EXPECT_EQ(line, thread + " line " + std::to_string(next[thread]++));
  }
  EXPECT_EQ(next.size(), 8U);
}

TEST(Logger, LetsTheProcessEndWhileThreadsAreLogging) {
  for (int round = 0; round < 10; ++round) {
    const Ended outcome = logLines("outlive-main", {{"TEMBRA_LOG", "/dev/null"}});
    ASSERT_EQ(outcome.status, 0) << outcome.errors;
  }
}

}  // namespace
