#include "support/classified.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/files.h"

namespace tembra::test {
namespace {

constexpr char kFile[] = "/tmp/device.json";

}  // namespace

Ended classify(const std::string& description, std::vector<std::string> options) {
  writeFile(kFile, description);
  options.insert(options.end(), {"classify", kFile});
  return runAssoc(std::move(options));
}

Ended classifyInput(const std::string& description) {
  writeFile(kFile, description);
  return Program({"/bin/sh", "-c", TEMBRA_ASSOC_PROGRAM " classify - <" + std::string(kFile)}).end();
}

nlohmann::json classifiedJson(const std::string& description) {
  const Ended ended = classify(description, {"--json"});
  EXPECT_EQ(ended.status, 0) << ended.errors;
  EXPECT_EQ(ended.errors, "");
  return nlohmann::json::parse(ended.output);
}

}  // namespace tembra::test
