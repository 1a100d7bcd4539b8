#include "doctor/broken_router.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "kit/json_schema.h"
#include "support/files.h"

namespace tembra::test {

void PrintTo(const BrokenRouter& row, std::ostream* out) { *out << row.name; }

kit::Settings wellSettings() {
  writeFile("/tmp/settings", "MeshSlaveID=3\n");
  return {{"TEMBRA_NVRAM", "/tmp/settings"}};
}

std::vector<nlohmann::json> checksOf(const kit::Ended& doctor) {
  static const kit::JsonSchema schema(TEMBRA_SCHEMAS "/tembra-doctor.schema.json");
  std::vector<nlohmann::json> checks;
  for (const std::string& line : kit::linesOf(doctor.output)) {
    checks.push_back(nlohmann::json::parse(line));
    EXPECT_EQ(schema.faultOf(checks.back()), "") << line;
  }
  return checks;
}

std::string textOf(const nlohmann::json& check) {
  std::string text;
  for (const char* member : {"id", "text", "proof", "advice"}) {
    if (check.at(member).is_string()) text += check.at(member).get<std::string>() + " ";
  }
  return text;
}

kit::Ended doctorOf(const std::vector<std::string>& more, kit::Settings settings) {
  std::vector<std::string> arguments = {"doctor", "--json"};
  arguments.insert(arguments.end(), more.begin(), more.end());
  settings.merge(wellSettings());
  return Program(assocCommand(arguments), settings).end();
}

namespace {

bool isFinding(const nlohmann::json& check) { return check.at("status") == "finding"; }

}  // namespace

void expectFindings(const BrokenRouter& row) {
  std::unique_ptr<SimRouter> router;
  if (row.simulator != std::vector<std::string>{"none"}) router = std::make_unique<SimRouter>(row.simulator);
  const Kept kept = row.make();
  const kit::Ended doctor = doctorOf(row.arguments, row.settings);
  std::set<std::string> ids;
  std::string all;
  for (const nlohmann::json& check : checksOf(doctor)) {
    if (!isFinding(check)) continue;
    ids.insert(check.at("id"));
    all += textOf(check) + "\n";
  }
  EXPECT_TRUE(std::ranges::includes(ids, row.ids)) << all << doctor.errors;
  if (row.others == Others::kNone) {
    EXPECT_EQ(ids, row.ids) << all;
  }
  EXPECT_NE(all.find(row.holds), std::string::npos) << all;
  EXPECT_EQ(doctor.status, ids.empty() ? 0 : 1);
}

}  // namespace tembra::test
