// What the program answers to a command line that it cannot follow, before it has done anything.
#include <gtest/gtest.h>

#include <ostream>

#include "support/program.h"

namespace tembra::test {
namespace {

struct UsageCase {
  const char* name;
  std::vector<std::string> arguments;
  int status;
  const char* says;
};

void PrintTo(const UsageCase& row, std::ostream* out) { *out << row.name; }

const UsageCase kUsageCases[] = {
    {"NoCommand", {}, 2, "a command is needed"},
    {"NoCommandOfACommand", {"hue"}, 2, "hue: a command is needed"},
    {"UnknownCommand", {"paint"}, 2, ": there is no command paint (--help tells what is possible)\n"},
    {"UnknownCommandOfACommand", {"hue", "paint"}, 2, ": there is no command paint (--help"},
    {"OneWordTooMany", {"add", "lamp"}, 2, ": the word lamp is not expected (--help"},
    {"CodeWithAControlCharacter", {"nest", "link", "a\x1b[31m"}, 2, "characters that are not allowed"},
    {"UnknownOption", {"add", "--colour"}, 2, ": there is no option --colour (--help"},
    {"UnknownRole", {"add", "--role", "plumber"}, 2, "plumber"},
    {"UnknownRadio", {"cancel", "radar"}, 2, "radar"},
    {"ResetOfNothing", {"reset", "--yes"}, 2, "radios is required"},
    {"ResetOfAnUnknownRadio", {"reset", "radar", "--yes"}, 2, "radar"},
    {"UnknownTypeName",
     {"add", "--type", "binaryswitch"},
     2,
     "neither the name nor the number of a device type (--help tells what is possible)\n"},
    {"UnknownCheck", {"doctor", "--skip", "moon"}, 2, "there is no check moon (--help tells what is possible)\n"},
    {"EmptyTypeName", {"add", "--type", ""}, 2, "neither the name nor the number of a device type"},
    {"NumberWithATail", {"add", "--type", "45x"}, 2, "neither the name nor the number of a device type"},
    {"ResetIsNotConfirmed", {"reset", "all"}, 2, "--yes confirms"},
    {"RemoveIsNotConfirmed", {"remove"}, 2, "--yes confirms"},
    {"DatabaseNameTooLong", {"devices", "--db", "/tmp/abcdefghij"}, 2, "at most 9 characters"},
    {"DatabaseIsAFolderByItsName", {"devices", "--db", "/tmp/abcdefg/"}, 2, "at most 9 characters"},
    {"DatabaseFolderMissing", {"devices", "--db", "/tmp/nowhere/ddb"}, 2, "folder cannot be entered"},
    {"NumberOfNoType", {"add", "--type", "999"}, 2, "neither the name nor the number of a device type"},
    {"NegativeType", {"add", "--type", "-1"}, 2, "neither the name nor the number of a device type"},
    {"NameWithAControlCharacter", {"add", "--name", "a\x1b[31mb"}, 2, "has control characters"},
    {"NameThatIsNoUtf8", {"add", "--name", "a\xff"}, 2, "is not UTF-8"},
    {"NameOfBlanks", {"add", "--name", "  "}, 2, "is empty"},
    {"PlaceWithoutRoom", {"add", "--place", std::string(180, 'x')}, 2, "there is room for 179"},
    {"HelpOfAnUnknownCommand", {"help", "paint"}, 2, "paint"},
    {"Version", {"--version"}, 0, ""},
    {"HelpAsACommand", {"help"}, 0, ""},
    {"HelpAsACommandOfACommand", {"help", "add"}, 0, ""},
    {"HelpAsACommandOfACommandOfACommand", {"help", "hue", "add"}, 0, ""},
    {"HelpOfAnUnknownCommandOfACommand", {"help", "hue", "paint"}, 2, "paint"},
    {"HelpAsACommandBehindAnOption", {"--json", "help"}, 0, ""},
    {"HelpAsACommandOfACommandBehindAnOption", {"--verbose", "help", "add"}, 0, ""},
    {"HelpAsACommandBeforeAnOption", {"help", "--json"}, 0, ""},
    {"HelpAsACommandOfACommandBetweenOptions", {"--yes", "help", "--json", "hue", "add"}, 0, ""},
    {"HelpOfAnUnknownCommandBehindAnOption", {"--verbose", "help", "paint"}, 2, "there is no command paint"},
    {"NameThatIsHelp", {"add", "--name", "help", "--colour"}, 2, "--colour"},
    {"Help", {"--help"}, 0, ""},
    {"HelpOfACommand", {"add", "--help"}, 0, ""},
};

class UsageTest : public testing::TestWithParam<UsageCase> {};

TEST_P(UsageTest, IsAnswered) {
  const Ended ended = runAssoc(GetParam().arguments);
  EXPECT_EQ(ended.status, GetParam().status);
  EXPECT_NE(ended.errors.find(GetParam().says), std::string::npos) << ended.errors;
  EXPECT_TRUE(ended.errors.empty() || ended.errors.starts_with("tembra-assoc: ")) << ended.errors;
}

INSTANTIATE_TEST_SUITE_P(CommandLine, UsageTest, testing::ValuesIn(kUsageCases),
                         [](const auto& test) { return test.param.name; });

TEST(Help, IsTheSameAsACommandAndAsAnOption) {
  EXPECT_EQ(runAssoc({"help"}).output, runAssoc({"--help"}).output);
  EXPECT_EQ(runAssoc({"help", "hue", "add"}).output, runAssoc({"hue", "add", "--help"}).output);
  EXPECT_EQ(runAssoc({"--json", "help"}).output, runAssoc({"--help"}).output);
  EXPECT_EQ(runAssoc({"--verbose", "help", "hue", "add"}).output, runAssoc({"hue", "add", "--help"}).output);
}

}  // namespace
}  // namespace tembra::test
