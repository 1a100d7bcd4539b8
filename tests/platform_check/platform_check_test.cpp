// tembra-platform-check with the stand-ins, which are well, and with libraries in which one thing is broken.
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <string>
#include <vector>

#include "kit/program.h"
#include "kit/sanitized.h"
#include "kit/text.h"

namespace {

namespace fs = std::filesystem;
using kit::Ended;

/// A folder that stands first in PATH, with a settings command of this text.
std::string pathWith(const std::string& command) {
  const fs::path folder = fs::temp_directory_path() / "settings-command";
  fs::create_directories(folder);
  std::ofstream(folder / "nvram_get") << "#!/bin/sh\n" << command << '\n';
  fs::permissions(folder / "nvram_get", fs::perms::owner_all);
  return folder.string() + ":/bin:/usr/bin";
}

Ended checkWith(const std::string& broken, const std::string& settingsCommand) {
  return kit::Program({BROKEN_PLATFORM_CHECK},
                      {{"TEMBRA_LOG", "off"}, {"BROKEN", broken}, {"PATH", pathWith(settingsCommand)}})
      .end();
}

/// The line of a function, without its summary when all is well.
std::string lineOf(const Ended& ended, const std::string& function) {
  for (const std::string& line : kit::linesOf(ended.output)) {
    if (line.find(" " + function + ": ") != std::string::npos) return line;
  }
  return "no line of " + function;
}

TEST(PlatformCheck, FindsNothingInTheStandIns) {
  const Ended ended = kit::Program({PLATFORM_CHECK}, {{"TEMBRA_LOG", "off"}, {"PATH", pathWith("echo 3")}}).end();
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.errors, "");
  const std::vector<std::string> lines = kit::linesOf(ended.output);
  for (const char* function : {"Logger::getInstance", "Logger::Log", "DevtypeEnumToStr", "StrToDevType", "parse_json2",
                               "find_json_token", "nvram_get", "Depot library"}) {
    EXPECT_EQ(lineOf(ended, function).substr(0, 8), "ok      ") << ended.output;
  }
  EXPECT_EQ(ended.output.find("remark"), std::string::npos) << ended.output;
  EXPECT_EQ(lines.back(), "No fault was found.");
}

int foldersOfChecks() {
  int count = 0;
  for (const auto& entry : fs::directory_iterator("/tmp")) {
    count += entry.path().string().find("tembra-platform-check") != std::string::npos ? 1 : 0;
  }
  return count;
}

TEST(PlatformCheck, LeavesNothingInTheTemporaryFolder) {
  checkWith("database-without-lock", "echo 3");
  EXPECT_EQ(foldersOfChecks(), 0);
}

class StoppedPlatformCheck : public testing::TestWithParam<int> {};

TEST_P(StoppedPlatformCheck, LeavesNothingInTheTemporaryFolder) {
  kit::Program check({BROKEN_PLATFORM_CHECK}, {{"TEMBRA_LOG", "off"}, {"BROKEN", "log-hangs"}, {"PATH", "/bin"}});
  check.waitFor("Logger::getInstance: ");
  while (foldersOfChecks() == 0) usleep(1000);
  check.signal(GetParam());
  EXPECT_EQ(check.end().status, 128 + GetParam());
  EXPECT_EQ(foldersOfChecks(), 0);
}

INSTANTIATE_TEST_SUITE_P(Signals, StoppedPlatformCheck, testing::Values(SIGHUP, SIGINT, SIGTERM));

// The service reads 9 characters, and of them the number in front.
TEST(PlatformCheck, TakesEachSettingThatTheServiceReads) {
  for (const char* command :
       {R"(printf '3 \r\n')", "echo ' 7'", "echo -1", "echo 1234567890", "echo '3 of 4'", "echo; exit 1", "exit 1"}) {
    const Ended ended = checkWith("", command);
    EXPECT_EQ(lineOf(ended, "nvram_get").substr(0, 8), "ok      ") << command << '\n' << ended.output;
  }
}

TEST(PlatformCheck, RefusesArguments) {
  const Ended ended = kit::Program({PLATFORM_CHECK, "all"}).end();
  EXPECT_EQ(ended.status, 2);
  EXPECT_EQ(ended.output, "");
  EXPECT_EQ(ended.errors.substr(0, 28), "Usage: tembra-platform-check");
}

struct Broken {
  const char* what;
  const char* function;
  const char* finding;  // a part of the function's line
  const char* settingsCommand = "echo 3";
  const char* verdict = "FAULT ";
};

void PrintTo(const Broken& broken, std::ostream* stream) { *stream << broken.what; }

const Broken kBroken[] = {
    {"null-logger", "Logger::getInstance", "expected a logger; came null"},
    {"new-logger", "Logger::getInstance", "came another one"},
    {"logger-of-a-thread", "Logger::getInstance", "tried getInstance() by another thread"},
    {"log-throws", "Logger::Log", "tried a line: level 0; expected that it returns; came an exception"},
    {"log-hangs", "Logger::Log", "tried a line: level 2; expected that it returns; came nothing for 10 seconds"},
    {"log-reads-behind", "Logger::Log", "came the process ended"},
    {"log-writes", "Logger::Log", "tried a line: level 0; expected that it returns; came the process ended"},
    {"log-formats", "Logger::Log", "tried a line: percent signs"},
    {"log-reads-later", "Logger::Log", "came the process ended"},
    {"log-of-one-thread", "Logger::Log, threads", "came nothing for 10 seconds"},
    {"log-is-slow", "Logger::Log, threads", "expected less than 10 ms for a line", "echo 3", "remark"},
    {"log-is-destroyed", "Logger::Log, at the end", "came the process ended"},
    {"fixed-name", "DevtypeEnumToStr", R"(tried the name of 60; expected "GenericDevice"; came "Generic")"},
    {"no-nul", "DevtypeEnumToStr", "came no NUL"},
    {"name-too-long", "DevtypeEnumToStr", "tried the name of 99; expected at most 179 characters and a NUL; came 200"},
    {"name-far-too-long", "DevtypeEnumToStr", "tried the name of 99; expected that it returns; came the process ended"},
    {"long-name", "DevtypeEnumToStr", "expected at most 25 characters", "echo 3", "remark"},
    {"no-name-for-others", "DevtypeEnumToStr",
     "tried the name of 99; expected that it returns; came the process ended"},
    {"name-throws", "DevtypeEnumToStr", "came an exception"},
    // The thread sanitizer ends the trial before its own comparison does.
    {"common-memory", "device types, threads", KIT_THREAD_SANITIZER != 0 ? "ended with status 66" : "came another one"},
    {"zone", "StrToDevType", R"(tried the number of "MotionSensor"; expected 11; came 20)"},
    {"given-number", "StrToDevType", R"(tried the number of "Siren"; expected 42, whose name it is; came 0)"},
    {"unknown-name", "StrToDevType", R"(tried the number of "NoSuchDevice"; expected 0)", "echo 3", "remark"},
    {"zone-without-values", "StrToDevType", R"(tried the number of "Keypad"; expected 20)", "echo 3", "remark"},
    {"unknown-device", "StrToDevType", R"(tried the number of "UnknownDevice"; expected 0)", "echo 3", "remark"},
    {"number-throws", "StrToDevType", R"(tried the number of ""; expected that it returns; came an exception)"},
    {"no-tokens", "parse_json2", "expected tokens; came null"},
    {"tokens-of-any-text", "parse_json2", "which has no whole object; expected null; came tokens", "echo 3", "remark"},
    {"tokens-of-half-an-object", "parse_json2", R"(expected "id" of it as null, or as a place in the text)"},
    {"no-rubbish-behind", "parse_json2", "behind it; expected tokens; came null", "echo 3", "remark"},
    {"reads-behind-the-length", "parse_json2", "came the process ended"},
    {"tokens-not-to-free", "parse_json2", "came the process ended"},
    {"finds-what-is-not-there", "find_json_token", "expected null; came a token"},
    {"quotes-belong-to-the-value", "find_json_token", R"(expected "001788fffe01020a"; came ""001788fffe01020a"")"},
    {"value-is-a-copy", "find_json_token", "expected a pointer into the text"},
    {"settings-command-missing", "nvram_get", "expected a command of that name in PATH; came none", "exit 127"},
    {"settings-no-number", "nvram_get", "expected a decimal number", "echo none"},
    {"settings-number-behind", "nvram_get", "expected a decimal number", "echo id 3"},
    {"settings-command-stays", "nvram_get", "came one", "sleep 5 >/dev/null & echo 3"},
    {"settings-command-hangs", "nvram_get", "came nothing for 10 seconds", "sleep 100"},
    {"settings-command-slow", "nvram_get", "came one after more than a second", "sleep 1.2; echo 3", "remark"},
    {"no-database", "Depot library", "tried dpopen of a new file; expected an open file"},
    {"no-walk", "Depot library", "tried dpiternext; expected 40 keys; came 0"},
    {"whole-values-only", "Depot library", "expected the first 7 bytes"},
    {"other-layout", "Depot library, layout", "FAULT"},
    {"database-without-lock", "Depot library, lock", "expected that it waits; came an answer at once"},
    {"no-repair", "Depot library, damage", "expected a repaired file"},
    {"no-sparse-database", "Depot library, damage",
     "tried dpopen of a repaired file, sparse and with one bucket; expected an open file"},
    {"late-database", "Depot library, time", "tried dpopen of a file of the year 2040"},
};

class PlatformCheckOf : public testing::TestWithParam<Broken> {};

TEST_P(PlatformCheckOf, FindsWhatIsBroken) {
  const Broken& broken = GetParam();
  const Ended ended = checkWith(broken.what, broken.settingsCommand);
  const bool isFault = std::string(broken.verdict) == "FAULT ";
  const std::string line = lineOf(ended, broken.function);
  EXPECT_EQ(line.substr(0, 6), broken.verdict) << ended.output;
  EXPECT_NE(line.find(broken.finding), std::string::npos) << ended.output;
  EXPECT_EQ(ended.status, isFault ? 1 : 0);
  EXPECT_NE(ended.output.find(isFault ? "\nFaults found: " : "\nNo fault was found."), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Libraries, PlatformCheckOf, testing::ValuesIn(kBroken), [](const auto& info) {
  std::string name;
  for (const char* at = info.param.what; *at != '\0'; ++at) name += *at == '-' ? '_' : *at;
  return name;
});

}  // namespace
