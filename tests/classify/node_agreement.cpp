#include "node_agreement.h"

#include <gtest/gtest.h>
#include <tembra/globals.h>

#include <algorithm>
#include <cstring>
#include <string_view>

#include "kit/trace.h"
#include "oracle/formatted.h"

namespace classify {
namespace {

template <typename Text>
void keepText(Text& field, const std::string& text) {
  std::memcpy(field, text.c_str(), text.size() + 1);
}

oracle::Lines linesOf(std::string_view trace) {
  oracle::Lines lines;
  while (!trace.empty()) {
    const std::size_t end = trace.find('\n');
    lines.emplace_back(trace.substr(0, end));
    trace.remove_prefix(end + 1);
  }
  return lines;
}

Outcome take(TembraAssociation& assoc, const ZwNodeInfo& received, int result) {
  EXPECT_EQ(std::memcmp(&assoc.zwNodeRx, &received, sizeof received), 0) << "the received block was changed";
  return {.result = result,
          .log = linesOf(kit::trace().takeLines()),
          .formatted = {},  // what tempStr takes, and the model compares
          .work = assoc.zwNodeWork,
          .classifiedType = assoc.classifiedType,
          .name = assoc.devName,
          .raised = {BasicFlag, MultilevelFlag, SensorBinaryFlag, ZwAcExtFlag}};
}

void prepare(TembraAssociation& assoc, const ZwNodeInfo& received, const Outcome& before) {
  assoc.zwNodeRx = received;
  assoc.zwNodeWork = before.work;
  assoc.classifiedType = before.classifiedType;
  keepText(assoc.devName, before.name);
  BasicFlag = before.raised.basic;
  MultilevelFlag = before.raised.multilevel;
  SensorBinaryFlag = before.raised.binarySensor;
  ZwAcExtFlag = before.raised.acExtender;
  kit::trace().forget();
}

std::string firstDifference(const ZwNodeInfo& actual, const ZwNodeInfo& expected) {
  if (std::memcmp(&actual, &expected, sizeof actual) == 0) return "";
  const auto* a = reinterpret_cast<const unsigned char*>(&actual);
  const auto* b = reinterpret_cast<const unsigned char*>(&expected);
  const auto at = std::mismatch(a, a + sizeof actual, b);
  return oracle::formatted("working copy at %d: %d instead of %d", static_cast<int>(at.first - a), *at.first,
                           *at.second);
}

bool sameBesideWorkingCopy(const Outcome& a, const Outcome& b) {
  return a.result == b.result && a.log == b.log && a.classifiedType == b.classifiedType && a.name == b.name &&
         a.raised == b.raised;
}

std::string joined(const oracle::Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

std::string textOf(const Outcome& outcome) {
  const oracle::Capabilities& raised = outcome.raised;
  return oracle::formatted("result %d type %d raised %d%d%d%d name ", outcome.result, outcome.classifiedType,
                           raised.basic, raised.multilevel, raised.binarySensor, raised.acExtender) +
         outcome.name + "\n" + joined(outcome.log);
}

}  // namespace

Outcome classifyBy(TembraAssociation& assoc, const ZwNodeInfo& received, const Outcome& before) {
  prepare(assoc, received, before);
  const int result = assoc.ZW_createDeviceType();
  return take(assoc, received, result);
}

Outcome deriveIndexesBy(TembraAssociation& assoc, const ZwNodeInfo& received, const Outcome& before) {
  prepare(assoc, received, before);
  assoc.ZW_indexToEnum(reinterpret_cast<unsigned char*>(assoc.zwNodeRx.values));
  return take(assoc, received, before.result);
}

Outcome marked() {
  Outcome outcome;
  std::memset(&outcome.work, 0xA5, sizeof outcome.work);
  outcome.classifiedType = 77;
  outcome.name = "before";
  return outcome;
}

bool expectSame(const Outcome& actual, const Outcome& expected, const std::string& what) {
  const std::string difference = firstDifference(actual.work, expected.work);
  if (difference.empty() && sameBesideWorkingCopy(actual, expected)) return true;
  ADD_FAILURE() << what << "\n" << difference << "\nactual " << textOf(actual) << "expected " << textOf(expected);
  return false;
}

}  // namespace classify
