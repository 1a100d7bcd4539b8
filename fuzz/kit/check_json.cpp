#include "kit/check_json.h"

#include "kit/json_schema.h"
#include "support/invariant.h"

namespace fuzz {
namespace {

void check(const std::string& text, const kit::JsonSchema& schema) {
  require(text.find('\n') == std::string::npos, "an object stands on one line");
  const std::string fault = schema.faultOf(nlohmann::json::parse(text));
  require(fault.empty(), (text + ": " + fault).c_str());
}

}  // namespace

void checkEventJson(const std::string& text) {
  static const kit::JsonSchema schema(TEMBRA_SCHEMAS "/tembra-event.schema.json");
  check(text, schema);
}

void checkStateJson(const std::string& text) {
  static const kit::JsonSchema schema(TEMBRA_SCHEMAS "/tembra-state.schema.json");
  check(text, schema);
}

}  // namespace fuzz
