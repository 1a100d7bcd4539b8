// The part of JSON Schema that the kit's schemas use.
#ifndef TEMBRA_TESTS_KIT_JSON_SCHEMA_H
#define TEMBRA_TESTS_KIT_JSON_SCHEMA_H

#include <nlohmann/json.hpp>
#include <string>

namespace kit {

/// Knows: type, const, enum, minimum, required, properties, additionalProperties, items, oneOf, $ref to "#/$defs/...".
class JsonSchema {
 public:
  explicit JsonSchema(const std::string& file);

  /// What is wrong with the value, and where; empty: nothing. A keyword that this does not know is wrong, too.
  [[nodiscard]] std::string faultOf(const nlohmann::json& value) const;

 private:
  nlohmann::json schema_;
};

}  // namespace kit

#endif
