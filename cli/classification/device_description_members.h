// How the members of a device description are read: a row for each, and nothing else is let through.
#ifndef TEMBRA_CLI_DEVICE_DESCRIPTION_MEMBERS_H
#define TEMBRA_CLI_DEVICE_DESCRIPTION_MEMBERS_H

#include <tembra/records.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace tembra::cli {

using Remarks = std::vector<std::string>;

template <class Record>
struct DescriptionMember {
  const char* name;
  const char* otherName;  ///< null: none
  void (*read)(const nlohmann::json& value, const std::string& name, Record& record, Remarks& remarks);
};

/// Throws Failure: "the device description " and why.
[[noreturn]] void refuseDescription(const std::string& why);
[[noreturn]] void refuseMember(const std::string& name, const std::string& possible);

/// Whether it is a whole number, as such or as a text of hexadecimal digits.
[[nodiscard]] bool isDescribedNumber(const nlohmann::json& value);

/// A number in these bounds, as such or as a text of hexadecimal digits ("0x0B04").
[[nodiscard]] int describedNumber(const nlohmann::json& value, const std::string& name, int least, int most);

/// A class as a number in these bounds, or by its name. Other tools write {"id": 37, "name": "Binary Switch"} or
/// {"cluster_id": "0x0402"}.
[[nodiscard]] int describedClass(const nlohmann::json& value, const std::string& name, int least, int most,
                                 std::optional<int> (*numberOf)(std::string_view name));

/// A list of at most so many.
[[nodiscard]] const nlohmann::json& describedList(const nlohmann::json& value, const std::string& name,
                                                  std::size_t most);

/// A text cut to what a field of so many bytes holds; empty for null.
[[nodiscard]] std::string describedText(const nlohmann::json& value, const std::string& name, std::size_t room,
                                        Remarks& remarks);

template <auto Field, int Least, int Most, class Record>
void readNumber(const nlohmann::json& value, const std::string& name, Record& record, Remarks& /*remarks*/) {
  using Number = std::remove_reference_t<decltype(record.*Field)>;
  record.*Field = static_cast<Number>(describedNumber(value, name, Least, Most));
}

template <auto Field, class Record>
void readText(const nlohmann::json& value, const std::string& name, Record& record, Remarks& remarks) {
  auto& field = record.*Field;
  const std::string text = describedText(value, name, sizeof field, remarks);
  text.copy(field, text.size());
}

/// For what people note about a device.
template <class Record>
void passOver(const nlohmann::json& /*value*/, const std::string& /*name*/, Record& /*record*/, Remarks& /*remarks*/) {}

template <class Record>
bool isNamed(const DescriptionMember<Record>& member, const std::string& name) {
  return name == member.name || (member.otherName != nullptr && name == member.otherName);
}

template <class Record, std::size_t Count>
void readMembers(const nlohmann::json& device, const DescriptionMember<Record> (&members)[Count], Record& record,
                 Remarks& remarks) {
  std::string possible;
  for (const auto& member : members) {
    possible.append(possible.empty() ? "" : ", ").append(member.name);
    if (member.otherName == nullptr) continue;
    possible.append(" or ").append(member.otherName);
    if (device.contains(member.name) && device.contains(member.otherName)) {
      refuseDescription(std::string("has both ") + member.name + " and " + member.otherName);
    }
  }
  for (const auto& [name, value] : device.items()) {
    const auto* const found =
        std::ranges::find_if(members, [&name = name](const auto& member) { return isNamed(member, name); });
    if (found == std::end(members)) refuseMember(name, possible);
    found->read(value, name, record, remarks);
  }
}

// Each reads one radio's description into the record that its server would send.
[[nodiscard]] ZwNodeInfo readZwaveDescription(const nlohmann::json& device, Remarks& remarks);
[[nodiscard]] ZbDeviceInfo readZigbeeDescription(const nlohmann::json& device, Remarks& remarks);

}  // namespace tembra::cli

#endif
