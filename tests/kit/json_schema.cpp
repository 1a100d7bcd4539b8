#include "kit/json_schema.h"

#include <algorithm>
#include <initializer_list>
#include <set>

#include "kit/text.h"

namespace kit {
namespace {

using Json = nlohmann::json;

const std::set<std::string> kNotes = {"$schema", "$id", "$defs", "title", "description"};

std::string joined(std::initializer_list<std::string> parts) {
  std::string text;
  for (const std::string& part : parts) text += part;
  return text;
}

class Check {
 public:
  explicit Check(const Json& root) : root_(root) {}

  [[nodiscard]] std::string of(const Json& value, const Json& schema, const std::string& place) const {
    for (const auto& [keyword, rule] : schema.items()) {
      if (kNotes.contains(keyword)) continue;
      std::string fault = byKeyword(keyword, rule, value, schema, place);
      if (!fault.empty()) return fault;
    }
    return "";
  }

 private:
  [[nodiscard]] std::string byKeyword(const std::string& keyword, const Json& rule, const Json& value,
                                      const Json& schema, const std::string& place) const {
    if (keyword == "$ref") return of(value, root_.at(Json::json_pointer(rule.get<std::string>().substr(1))), place);
    if (keyword == "type") return isOfType(value, rule) ? "" : place + " is no " + rule.dump();
    if (keyword == "const") return value == rule ? "" : place + " is not " + rule.dump();
    if (keyword == "enum")
      return std::ranges::find(rule, value) != rule.end() ? "" : place + " is none of " + rule.dump();
    if (keyword == "minimum") return !value.is_number() || value >= rule ? "" : place + " is below " + rule.dump();
    if (keyword == "required") return missing(value, rule, place);
    if (keyword == "properties") return members(value, rule, place);
    if (keyword == "additionalProperties") return others(value, schema, place);
    if (keyword == "items") return elements(value, rule, place);
    if (keyword == "oneOf") return oneOf(value, rule, place);
    return "unknown keyword " + keyword;
  }

  static bool isOfType(const Json& value, const Json& types) {
    if (types.is_array()) {
      return std::ranges::any_of(types, [&](const Json& type) { return isOfType(value, type); });
    }
    if (types == "integer") return value.is_number_integer();
    return types == value.type_name();
  }

  static std::string missing(const Json& value, const Json& names, const std::string& place) {
    for (const Json& name : names) {
      if (!value.contains(name.get<std::string>())) return place + " has no " + name.dump();
    }
    return "";
  }

  [[nodiscard]] std::string members(const Json& value, const Json& rules, const std::string& place) const {
    for (const auto& [name, rule] : rules.items()) {
      if (!value.contains(name)) continue;
      std::string fault = of(value.at(name), rule, joined({place, ".", name}));
      if (!fault.empty()) return fault;
    }
    return "";
  }

  static std::string others(const Json& value, const Json& schema, const std::string& place) {
    for (const auto& [name, member] : value.items()) {
      if (!schema.at("properties").contains(name)) return joined({place, " must not have \"", name, "\""});
    }
    return "";
  }

  [[nodiscard]] std::string elements(const Json& value, const Json& rule, const std::string& place) const {
    for (std::size_t i = 0; i < value.size(); ++i) {
      std::string fault = of(value.at(i), rule, place + "[" + std::to_string(i) + "]");
      if (!fault.empty()) return fault;
    }
    return "";
  }

  [[nodiscard]] std::string oneOf(const Json& value, const Json& rules, const std::string& place) const {
    const auto fits = std::ranges::count_if(rules, [&](const Json& rule) { return of(value, rule, place).empty(); });
    return fits == 1 ? "" : place + " is " + std::to_string(fits) + " of the kinds that there are";
  }

  const Json& root_;
};

}  // namespace

JsonSchema::JsonSchema(const std::string& file) : schema_(Json::parse(readFile(file))) {}

std::string JsonSchema::faultOf(const Json& value) const { return Check(schema_).of(value, schema_, "the value"); }

}  // namespace kit
