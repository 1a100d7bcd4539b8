// What tembra-assoc classify refuses: with one sentence, and without having called the library.
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "support/classified.h"
#include "support/files.h"
#include "support/terminal.h"

namespace tembra::test {
namespace {

using Json = nlohmann::json;

struct Refusal {
  std::string description;
  const char* sentence;  ///< behind "the device description "
};

std::string withMany(Json device, const char* member, int count, const Json& item) {
  device[member] = std::vector<Json>(static_cast<std::size_t>(count), item);
  return device.dump();
}

std::string withManyEndpoints() {
  const Json endpoint = Json::parse(R"({"endpoint": 1, "clusters": [1, 2, 3, 4, 5, 6, 7, 8, 9, 10]})");
  return Json{{"endpoints", {endpoint, endpoint, endpoint, {{"endpoint", 2}, {"clusters", {1}}}}}}.dump();
}

constexpr char kNoZwaveMember[] =
    R"(has a member "clusters"; possible: node, basic, generic, specific, classes or commandClasses, values, label, )"
    "description, source, derived.";

std::vector<Refusal> refusalsOfTexts() {
  return {
      {"", "is empty."},
      {" \r\n\t", "is empty."},
      {"{\"generic\": 16", "is no JSON text: see line 1, column 15."},
      {"{\"generic\":\n  16},,", "is no JSON text: see line 2, column 6."},
      {"{\"generic\": 16,\n \"label\": {\"a\\\"\": 1},\n \"x\": [{\"a\\\"\": 1, \"a\\\"\": 2}]}",
       R"(has the member "a\"" twice: see line 3, column 19.)"},
      {"{\"generic\": 16} {}", "is no JSON text: see line 1, column 17."},
      {"{\"model\": \"\xC3\xBC\",\n\"clusters\": [], \"\xC3\xBC\": \"\xFF\"}",
       "is no JSON text: see line 2, column 23."},
      {std::string("{\"generic\": 16}\0", 16), "is no JSON text: see line 1, column 16."},
      {std::string(100'000, '['), "is no JSON text: see line 1, column 100001."},
      {"[{\"generic\": 16}]", "is no JSON object (one device, not a list of them)."},
      {"16", "is no JSON object (one device, not a list of them)."},
      {"{}", R"(has neither "generic" (Z-Wave) nor "clusters" or "endpoints" (ZigBee).)"},
      {R"({"generic": 16, "clusters": []})", kNoZwaveMember},
      {R"({"clusters": [], "endpoints": []})", "has both clusters and endpoints."},
      {R"({"clusters": [], "zoneType": 1, "zone_type": 1})", "has both zone_type and zoneType."},
      {R"({"clusters": [], "\u001b[31mcolour": 1})",
       R"(has a member "?[31mcolour"; possible: manufacturer, model, zone_type or zoneType, clusters, endpoints, )"
       "ac_checks or acChecks, product_words or productWords, type, label, description, source, derived."},
  };
}

std::vector<Refusal> refusalsOfNodes() {
  const Json node = {{"generic", 16}};
  const Json triple = {37, 0, 1};
  return {
      {R"({"generic": 256})", "needs a number from 0 to 255 for generic."},
      {R"({"generic": -1})", "needs a number from 0 to 255 for generic."},
      {R"({"generic": 18446744073709551615})", "needs a number from 0 to 255 for generic."},
      {R"({"generic": 1e300})", "needs a number from 0 to 255 for generic."},
      {R"({"generic": 1e999})", "has a number that is too large: see line 1, column 18."},
      {R"({"generic": 16, "label": [-1e999]})", "has a number that is too large: see line 1, column 33."},
      {R"({"generic": 16, "generic": 17})", "has the member \"generic\" twice: see line 1, column 17."},
      {R"({"generic": 1.5})", "needs a number from 0 to 255 for generic."},
      {R"({"generic": "16"})", "needs a number from 0 to 255 for generic."},
      {R"({"generic": "0xFFFFFFFFFF"})", "needs a number from 0 to 255 for generic."},
      {R"({"generic": null})", "needs a number from 0 to 255 for generic."},
      {R"({"generic": true})", "needs a number from 0 to 255 for generic."},
      {R"({"generic": 16, "node": 255})", "needs a number from 1 to 254 for node."},
      {R"({"generic": 16, "classes": 37})", "needs a list for classes."},
      {R"({"generic": 16, "classes": [255]})", "needs a number from 1 to 254 for a class in classes."},
      {R"({"generic": 16, "values": [[37, 0]]})",
       "has one of the values that is not [command class, index, instance]."},
      {R"({"generic": 16, "values": [[0, 0, 1]]})", "needs a number from 1 to 254 for a command class in values."},
      {R"({"generic": 16, "values": [[37, 0, 256]]})", "needs a number from 0 to 255 for an instance in values."},
      {withMany(node, "classes", 53, 37), "has 53 classes, the record has room for 52."},
      {withMany(node, "values", 181, triple), "has 181 values, the record has room for 180."},
      {R"({"generic": 16, "classes": ["Binary Painter"]})",
       R"(names a class in classes "Binary Painter", which is not known.)"},
      {R"({"generic": 16, "classes": [{"name": "Binary Switch"}]})",
       "needs a number from 1 to 254 for a class in classes."},
  };
}

std::vector<Refusal> refusalsOfZigbeeDevices() {
  const Json pair = {6, 1};
  return {
      {withMany({}, "clusters", 31, pair), "has 31 clusters, the record has room for 30."},
      {withManyEndpoints(), "has 31 clusters, the record has room for 30."},
      {R"({"clusters": [6]})", "has one of the clusters that is not [cluster, endpoint]."},
      {R"({"clusters": [[6, 1, 1]]})", "has one of the clusters that is not [cluster, endpoint]."},
      {R"({"clusters": [[65536, 1]]})", "needs a number from 0 to 65535 for a cluster."},
      {R"({"clusters": [[6, 256]]})", "needs a number from 0 to 255 for a cluster's endpoint."},
      {R"({"endpoints": [{"endpoint": 1}]})", "has one of the endpoints without its endpoint and clusters."},
      {R"({"endpoints": [{"endpoint": 256, "clusters": []}]})", "needs a number from 0 to 255 for endpoint."},
      {R"({"endpoints": {"1": {"output_clusters": []}}})",
       "has one of the endpoints without its endpoint and clusters."},
      {R"({"endpoints": {"1": {"clusters": {"output": []}}}})",
       "has one of the endpoints without its endpoint and clusters."},
      {R"({"endpoints": {"first": {"clusters": []}}})", "needs a number from 0 to 255 for each of the endpoints."},
      {R"({"endpoints": {"1": {"clusters": []}, "0x01": {"clusters": [6]}}})", "has the endpoint 1 twice."},
      {R"({"endpoints": {"1": {"clusters": []}}, "model": "a", "modelId": "b"})", R"(has several values for "model".)"},
      {R"({"endpoints": {"256": {"clusters": []}}})", "needs a number from 0 to 255 for each of the endpoints."},
      {R"({"endpoints": 1})", "needs a list for endpoints."},
      {R"({"clusters": [["genPainting", 1]]})", R"(names a cluster "genPainting", which is not known.)"},
      {R"({"endpoints": [{"endpoint": 1, "clusters": ["lightLink"]}]})",
       R"(names a cluster "lightLink", which is not known.)"},
      {R"({"clusters": [], "model": 3041})", "needs a text for model."},
      {R"({"clusters": [], "type": "Router"})", "needs a number from 0 to 255 for type."},
      {R"({"endpoints": {"1": {"clusters": []}}, "type": 256})", "needs a number from 0 to 255 for type."},
      {R"({"clusters": [], "ac_checks": [1, 2]})", "needs 3 numbers for ac_checks."},
      {R"({"clusters": [], "product_words": [1, 65536]})", "needs a number from 0 to 65535 for product_words."},
  };
}

void expectRefused(const std::vector<Refusal>& refusals) {
  for (const Refusal& refusal : refusals) {
    SCOPED_TRACE(refusal.description.substr(0, 80));
    const Ended ended = classify(refusal.description);
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.output, "");
    EXPECT_EQ(ended.errors, "tembra-assoc: the device description " + std::string(refusal.sentence) + "\n");
  }
}

TEST(ClassifyInput, RefusesTextsThatDescribeNoDevice) { expectRefused(refusalsOfTexts()); }
TEST(ClassifyInput, RefusesNodesThatNoRecordHolds) { expectRefused(refusalsOfNodes()); }
TEST(ClassifyInput, RefusesZigbeeDevicesThatNoRecordHolds) { expectRefused(refusalsOfZigbeeDevices()); }

TEST(ClassifyInput, TakesAsMuchAsTheRecordHolds) {
  EXPECT_EQ(classify(withMany({{"generic", 3}}, "classes", 52, 37)).status, 0);
  EXPECT_EQ(classify(withMany({{"generic", 3}}, "values", 180, {37, 0, 1})).status, 0);
  EXPECT_EQ(classify(withMany({}, "clusters", 30, {6, 1})).status, 0);
}

// What other tools print of a device, and the same in our own words.
const std::pair<const char*, const char*> kDialects[] = {
    {R"({"endpoints": {"10": {"profile_id": 260, "input_clusters": ["0x0006"], "output_clusters": ["0x0019"]},
                       "2": {"device_type": "0x0302", "in_clusters": [{"cluster_id": "0x0402"}]}},
         "manufacturer": "Maker", "model": "Thing"})",
     R"({"clusters": [[1026, 2], [6, 10]], "manufacturer": "Maker", "model": "Thing"})"},
    {R"({"endpoints": {"1": {"epId": 1, "inClusterList": [0, 1280], "outClusterList": [25],
                             "clusters": {"genBasic": {"attributes": {}}}}},
         "manufName": "Maker", "modelId": "Thing"})",
     R"({"clusters": [[0, 1], [1280, 1]], "manufacturer": "Maker", "model": "Thing"})"},
    {R"({"endpoints": {"1": {"clusters": {"input": ["genBasic", "msTemperatureMeasurement"], "output": ["genOta"]}}}})",
     R"({"clusters": [["Basic", 1], ["Temperature Measurement", 1]]})"},
    {R"({"clusters": [["On/Off", 1], ["genLevelCtrl", 1], ["color control", 1]]})",
     R"({"clusters": [[6, 1], [8, 1], [768, 1]]})"},
    {R"({"generic": 16, "commandClasses": [{"id": 37, "name": "Binary Switch", "version": 1}, "Notification"]})",
     R"({"generic": 16, "classes": [37, 113]})"},
    {R"({"generic": 3, "classes": ["SENSOR BINARY", "COMMAND_CLASS_BATTERY"], "values": [["Binary Sensor", 0, 1]]})",
     R"({"generic": 3, "classes": ["0x30", "0x80"], "values": [[48, 0, 1]]})"},
};

TEST(ClassifyInput, ReadsWhatOtherToolsWrite) {
  for (const auto& [theirs, ours] : kDialects) {
    const Json answer = classifiedJson(theirs);
    EXPECT_EQ(answer, classifiedJson(ours)) << theirs;
  }
}

// The print of another tool, and what of it no record has room for.
const std::pair<const char*, const char*> kPassedOver[] = {
    {R"({"endpoints": {"1": {"in_clusters": [6]}}, "nwk": "0x1234", "ieee": "00:01"})", "passed over: ieee, nwk"},
    {R"({"type": "Router", "endpoints": {"1": {"clusters": {"input": ["genOnOff"]}}}})", "passed over: type"},
    {R"({"endpoints": {"11": {"clusters": {"input": ["genOnOff", "lightLink"]}}}})",
     "passed over: cluster lightLink on endpoint 11"},
};

TEST(ClassifyInput, SaysWhatItPassesOverInThePrintOfAnotherTool) {
  for (const auto& [theirs, remark] : kPassedOver) EXPECT_EQ(classifiedJson(theirs).at("why").at(0), remark);
}

TEST(ClassifyInput, KnowsEveryNameOfACommandClass) {
  const std::vector<std::string> lines = kit::linesOf(runAssoc({"names", "cclass"}).output);
  Json byName = {{"generic", 3}, {"classes", Json::array()}};
  Json byNumber = byName;
  for (const std::string& line : lines) {
    byName["classes"].push_back(line.substr(6));
    byNumber["classes"].push_back(line.substr(0, 4));
    if (byName["classes"].size() < 41) continue;  // half of them; the record has room for 52
    EXPECT_EQ(classifiedJson(byName.dump()), classifiedJson(byNumber.dump()));
    byName["classes"].clear();
    byNumber["classes"].clear();
  }
  EXPECT_EQ(lines.size(), 82U);
}

TEST(ClassifyInput, SaysWhatCannotBeRead) {
  const std::pair<std::string, std::string> rows[] = {
      {"/tmp/nowhere", "cannot read /tmp/nowhere: No such file or directory."},
      {"/tmp", "cannot read /tmp: it is a folder."},
      {"", "cannot read : No such file or directory."},
      {"/dev/zero", "cannot read /dev/zero: too long for the description of a device."},
  };
  for (const auto& [path, sentence] : rows) {
    const Ended ended = runAssoc({"classify", path});
    EXPECT_EQ(ended.status, 1) << path;
    EXPECT_EQ(ended.errors, "tembra-assoc: " + sentence + "\n");
  }
  EXPECT_EQ(runAssoc({"classify"}).status, 2);
}

TEST(ClassifyInput, ComesThroughStandardInputAsWell) {
  const std::string description = "\n{\"generic\": 16,\n\"specific\": 5},\n";
  const Ended ended = classifyInput(description);
  EXPECT_EQ(ended.status, 0) << ended.errors;
  EXPECT_EQ(ended.output, classify(description).output);
  EXPECT_EQ(classifyInput("").sentence(), "tembra-assoc: the device description is empty.");
  EXPECT_EQ(classifyInput(std::string(1'000'001, '\n')).sentence(),
            "tembra-assoc: cannot read standard input: too long for the description of a device.");
}

TEST(ClassifyInput, MayBeClosed) {
  Program program({"/bin/sh", "-c", R"(exec "$0" classify - <&-)", TEMBRA_ASSOC_PROGRAM});
  EXPECT_EQ(program.end().sentence(), "tembra-assoc: the device description is empty.");
}

TEST(ClassifyInput, IsTypedAtATerminal) {
  Terminal terminal(assocCommand({"classify", "-"}));
  terminal.waitFor("type the description of the device, then Ctrl-D.");
  terminal.type("{\"generic\": 16}\r");
  terminal.type("\x04");
  terminal.waitFor("OutletSwitch (44)");
  EXPECT_EQ(terminal.end(), 0);
}

TEST(ClassifyInput, EndsWithCtrlCAtATerminal) {
  Terminal terminal(assocCommand({"classify", "-"}));
  terminal.waitFor("then Ctrl-D.");
  terminal.type("\x03");
  terminal.waitFor("tembra-assoc: interrupted.");
  EXPECT_EQ(terminal.end(), 130);
}

}  // namespace
}  // namespace tembra::test
