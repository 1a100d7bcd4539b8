// The exact text of each result of the Hue server that has one. Event and `idle` of every result are rows of the page
// docs/state-machine.md, which ../receiver/transitions_test.cpp plays.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "kit/router_test.h"
#include "wire.h"

namespace {

using HueAnswerTest = kit::ConnectedTest;

struct Result {
  int type;
  const char* text;  // behind the command type
};

constexpr Result kResults[] = {
    {1, R"(","MobileInternalIndex":"","Success":"false","Reason":"HueFailed","Type":"HueHub"})"},
    {2, R"(","MobileInternalIndex":"","Success":"true","Type":"HueHub","Reason":"HueAdded"})"},
    {3, R"(","MobileInternalIndex":"","Success":"false","Reason":"HueBridgeNotFound","Type":"HueHub"})"},
    {4, R"(","MobileInternalIndex":"","Success":"false","Type":"HueHub","Reason":"HueButtonNotPressed"})"},
    {5, R"(","MobileInternalIndex":"","Success":"false","Type":"HueHub","Reason":"BridgeNotFound"})"},
    {6, R"(", "MobileInternalIndex":"","Success":"true","Type":"HueBulb"})"},
    {8, R"(", "MobileInternalIndex":"","Success":"true","Type":"HueHub"})"},
    {9, R"(", "MobileInternalIndex":"","Success":"true","Type":"HueHub"})"},
};

}  // namespace

// From the first byte to the last, over all results one after the other: a text writes itself and its NUL, and what
// stood behind it stays. A command type without its NUL ends with its field.
TEST_F(HueAnswerTest, ThePayloadIsTheExactText) {
  Wire payload(4096);
  const std::string full(59, 'c');
  for (const std::string& type : {full + "c", full, std::string("AddIPDevice"), std::string(), std::string("%s%n")}) {
    for (const Result& result : kResults) {
      std::strncpy(cmdtype, type.c_str(), sizeof cmdtype);
      router.hue().send(hueAnswer(result.type));
      payload.text(0, R"({"CommandType":")" + type.substr(0, 59) + result.text + "\n" + '\0');
      EXPECT_EQ(payloadOf(router.takeEvents().at(0)), payload.all()) << result.type << " " << type;
    }
  }
}
