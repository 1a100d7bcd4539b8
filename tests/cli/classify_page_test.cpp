// docs/classify.md and its schema say what the program does.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "support/classified.h"
#include "support/files.h"

namespace tembra::test {
namespace {

using Json = nlohmann::json;
using Names = std::set<std::string>;

struct Block {
  std::string language;
  std::string text;
};

std::vector<Block> blocksOf(const std::string& page) {
  std::vector<Block> blocks;
  bool inside = false;
  std::istringstream lines(page);
  for (std::string line; std::getline(lines, line);) {
    const bool fence = line.starts_with("```");
    if (fence && !inside) blocks.push_back({line.substr(3), ""});
    if (!fence && inside) blocks.back().text.append(line).append(1, '\n');
    inside = inside != fence;
  }
  return blocks;
}

std::string page() { return readFile(TEMBRA_DOCS "/classify.md"); }
Json schemaOf(const char* radio) {
  return Json::parse(readFile(TEMBRA_DOCS "/classify.schema.json")).at("$defs").at(radio);
}

TEST(ClassifyPage, PrintsItsExamples) {
  const std::vector<Block> blocks = blocksOf(page());
  ASSERT_EQ(blocks.size(), 6U);
  for (std::size_t i = 0; i < blocks.size(); i += 2) {
    ASSERT_EQ(blocks[i].language, "json");
    const bool asJson = blocks[i + 1].language == "jsonl";
    const Ended ended =
        classify(blocks[i].text, asJson ? std::vector<std::string>{"--json"} : std::vector<std::string>{});
    EXPECT_EQ(ended.output, blocks[i + 1].text);
  }
}

// "manufacturer, zone_type or zoneType" without what joins them.
Names namesIn(std::string list) {
  for (const std::string joint : {" or ", ", "}) {
    for (auto at = list.find(joint); at != std::string::npos; at = list.find(joint))
      list.replace(at, joint.size(), " ");
  }
  std::istringstream words(list);
  return {std::istream_iterator<std::string>(words), {}};
}

// The members that the program says are possible.
Names membersRead(Json device) {
  device["colour"] = "red";
  const std::string sentence = classify(device.dump()).sentence();
  const std::string lead = "possible: ";
  const auto begin = sentence.find(lead) + lead.size();
  return namesIn(sentence.substr(begin, sentence.size() - 1 - begin));
}

struct Radio {
  const char* name;
  Json smallest;  ///< description
};

const Radio kRadios[] = {{"zwave", {{"generic", 0}}}, {"zigbee", {{"clusters", Json::array()}}}};

TEST(ClassifyPage, HasTheMembersThatAreRead) {
  for (const Radio& radio : kRadios) {
    const Names read = membersRead(radio.smallest);
    EXPECT_GE(read.size(), 11U);
    const Json properties = schemaOf(radio.name).at("properties");
    Names inSchema;
    for (const auto& [name, rule] : properties.items()) inSchema.insert(name);
    EXPECT_EQ(inSchema, read);
    for (const std::string& name : read) EXPECT_NE(page().find("`" + name + "`"), std::string::npos) << name;
  }
}

Json resolved(Json rule) {
  const Json definitions = Json::parse(readFile(TEMBRA_DOCS "/classify.schema.json")).at("$defs");
  while (rule.is_object() && rule.contains("$ref")) {
    rule = definitions.at(rule.at("$ref").get<std::string>().substr(std::string("#/$defs/").size()));
  }
  return rule.is_object() && rule.contains("anyOf") ? resolved(rule.at("anyOf").at(0)) : rule;
}

// Values at the bounds of a rule, and whether it allows them.
std::vector<std::pair<Json, bool>> probes(const Json& rule) {
  const Json bound = resolved(rule);
  if (!bound.is_object()) return {{"anything", true}};
  if (bound.contains("minimum")) {
    const int least = bound.at("minimum");
    const int most = bound.at("maximum");
    return {{least - 1, false}, {least, true}, {most, true}, {most + 1, false}};
  }
  if (!bound.contains("maxItems")) return {{"text", true}, {7, false}};
  const Json item = bound.contains("minItems") ? Json(1) : Json::array({1, 1});
  return {{std::vector<Json>(bound.at("maxItems").get<std::size_t>() + 1, item), false}, {"text", false}};
}

TEST(ClassifyPage, HasTheBoundsThatHold) {
  for (const Radio& radio : kRadios) {
    const Json properties = schemaOf(radio.name).at("properties");
    for (const auto& [name, rule] : properties.items()) {
      for (const auto& [value, allowed] : probes(rule)) {
        Json device = radio.smallest;
        device[name] = value;
        EXPECT_EQ(classify(device.dump()).status == 0, allowed) << device.dump();
      }
    }
  }
}

}  // namespace
}  // namespace tembra::test
