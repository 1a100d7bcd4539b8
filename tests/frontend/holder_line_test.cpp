// The first line of a holder, as it is written and as it is read.
#include "watch/holder_line.h"

#include <gtest/gtest.h>

namespace tembra::test {
namespace {

using frontend::HolderReport;

TEST(HolderLine, IsReadAsItWasWritten) {
  const std::string line =
      frontend::holderLine({2, R"(a "kiosk" \ b)", 812, 1790000000}, R"({"operation":"add","phase":"choice"})");
  EXPECT_EQ(line, R"({"schema":1,"holder":{"role":2,"program":"a \"kiosk\" \\ b","pid":812,"since":1790000000},)"
                  R"("state":{"operation":"add","phase":"choice"}})");
  HolderReport report;
  ASSERT_TRUE(frontend::readHolderLine(line, report));
  EXPECT_EQ(report.holder.role, 2);
  EXPECT_EQ(report.holder.program, R"(a "kiosk" \ b)");
  EXPECT_EQ(report.holder.pid, 812);
  EXPECT_EQ(report.holder.since, 1790000000);
  EXPECT_EQ(report.operation, "add");
  EXPECT_EQ(report.phase, "choice");
  EXPECT_EQ(report.error, "");
}

TEST(HolderLine, AnythingElseIsRefused) {
  for (const char* const line : {"",
                                 " ",
                                 "1",
                                 "null",
                                 R"("text")",
                                 "[]",
                                 "{",
                                 "}",
                                 "{}x",
                                 "{}{}",
                                 "{,}",
                                 R"({"a"})",
                                 R"({"a":})",
                                 R"({"a":1,})",
                                 "{a:1}",
                                 R"({"a":1 "b":2})",
                                 R"({"a":[1,]})",
                                 R"({"a":[1})",
                                 R"({"a":+1})",
                                 R"({"a":truth})",
                                 R"({"a":"})",
                                 R"({"a":"\x"})",
                                 R"({"a":"\u12"})",
                                 R"({"a":"\u12g4"})",
                                 R"({"a":"\u-123"})",
                                 R"({"a":"\ud800"})",
                                 R"({"a":"\ud800x"})",
                                 R"({"a":"\ud800\u0041"})",
                                 R"({"a":"\udc00"})",
                                 "{\"a\":\"\n\"}",
                                 R"({"a":"\)",
                                 R"({"a":[[[[[[[[[[[[[[[[[1]]]]]]]]]]]]]]]]]})"}) {
    HolderReport report;
    EXPECT_FALSE(frontend::readHolderLine(line, report)) << line;
  }
}

TEST(HolderLine, OnlyWhatIsKnownIsRead) {
  const struct {
    const char* line;
    long long pid;
    const char* program;
  } rows[] = {
      {R"( { "holder" : { "pid" : 5 , "program" : "x" } } )", 5, "x"},
      {R"({"new":[{"pid":9},[],{},-1.5e3,true,false,null],"holder":{"more":{"pid":9},"pid":5,"program":"x"}})", 5, "x"},
      {R"({"holder":{"pid":"5","program":7}})", 0, ""},
      {R"({"holder":[{"pid":5}],"holder/pid":5,"":{"holder":{"pid":5}}})", 0, ""},
      {R"({"holder":{"pid":99999999999999999999}})", 0, ""},
      {R"({"holder":{"program":"\u0041\u00e9\u20ac\ud83d\ude00\"\\\/\b\f\n\r\t"}})", 0,
       "A\u00e9\u20ac\U0001F600\"\\/\b\f\n\r\t"},
  };
  for (const auto& row : rows) {
    HolderReport report;
    EXPECT_TRUE(frontend::readHolderLine(row.line, report)) << row.line;
    EXPECT_EQ(report.holder.pid, row.pid) << row.line;
    EXPECT_EQ(report.holder.program, row.program) << row.line;
  }
}

TEST(HolderLine, AnErrorLineIsSeen) {
  HolderReport report;
  ASSERT_TRUE(frontend::readHolderLine(frontend::errorLine("not permitted"), report));
  EXPECT_EQ(report.error, "not permitted");
}

}  // namespace
}  // namespace tembra::test
