#include "sim/replay/difference.h"

#include <algorithm>
#include <cstddef>
#include <type_traits>

#include "platform/printable.h"
#include "recording/hexadecimal.h"
#include "sim/core/record_bytes.h"
#include "sim/ha/notice_check.h"
#include "sim/replay/commands_sent.h"
#include "tembra/records.h"
#include "tembra/vocabulary.h"

namespace tembra::sim {
namespace {

using Bytes = std::span<const unsigned char>;

enum class Content { kNumber, kText, kList };

struct Field {
  std::string name;
  std::size_t offset;
  std::size_t size;
  std::size_t entry;  ///< bytes of an entry of a list
  Content content;

  [[nodiscard]] std::size_t end() const { return offset + size; }
};

template <typename Member>
Field fieldOf(const char* name, std::size_t offset) {
  using Entry = std::remove_all_extents_t<Member>;
  const bool isText = std::is_same_v<Entry, char>;
  const Content content = !std::is_array_v<Member> ? Content::kNumber : isText ? Content::kText : Content::kList;
  return {name, offset, sizeof(Member), sizeof(Entry), content};
}

#define TEMBRA_FIELD(record, member) fieldOf<decltype(record::member)>(#member, offsetof(record, member))

const std::vector<Field>& nodeFields() {
  static const std::vector<Field> fields{
      TEMBRA_FIELD(ZwNodeInfo, nodeId),        TEMBRA_FIELD(ZwNodeInfo, commandClasses),
      TEMBRA_FIELD(ZwNodeInfo, basicClass),    TEMBRA_FIELD(ZwNodeInfo, genericClass),
      TEMBRA_FIELD(ZwNodeInfo, specificClass), TEMBRA_FIELD(ZwNodeInfo, values),
      TEMBRA_FIELD(ZwNodeInfo, deviceKind),    TEMBRA_FIELD(ZwNodeInfo, finalType),
      TEMBRA_FIELD(ZwNodeInfo, proposedType),  TEMBRA_FIELD(ZwNodeInfo, name),
      TEMBRA_FIELD(ZwNodeInfo, location),      TEMBRA_FIELD(ZwNodeInfo, requestMark),
      TEMBRA_FIELD(ZwNodeInfo, indexes),       TEMBRA_FIELD(ZwNodeInfo, indexesEnd)};
  return fields;
}

const std::vector<Field>& deviceFields() {
  static const std::vector<Field> fields{
      TEMBRA_FIELD(ZbDeviceInfo, shortAddress), TEMBRA_FIELD(ZbDeviceInfo, msgCode),
      TEMBRA_FIELD(ZbDeviceInfo, clusters),     TEMBRA_FIELD(ZbDeviceInfo, manufacturer),
      TEMBRA_FIELD(ZbDeviceInfo, devType),      TEMBRA_FIELD(ZbDeviceInfo, zoneType),
      TEMBRA_FIELD(ZbDeviceInfo, acCheckA),     TEMBRA_FIELD(ZbDeviceInfo, acCheckB),
      TEMBRA_FIELD(ZbDeviceInfo, acCheckC),     TEMBRA_FIELD(ZbDeviceInfo, productWordA),
      TEMBRA_FIELD(ZbDeviceInfo, productWordB), TEMBRA_FIELD(ZbDeviceInfo, model),
      TEMBRA_FIELD(ZbDeviceInfo, indexCount),   TEMBRA_FIELD(ZbDeviceInfo, indexes),
      TEMBRA_FIELD(ZbDeviceInfo, name),         TEMBRA_FIELD(ZbDeviceInfo, location)};
  return fields;
}

std::vector<Field> noticeFields(Bytes notice) {
  const auto record = recordFrom<HaNotice>(notice);
  std::vector<Field> fields{TEMBRA_FIELD(HaNotice, recordKind)};
  if (isRemoveAll(record)) return fields;
  for (Field field : record.recordKind == RECORD_ZWAVE ? nodeFields() : deviceFields()) {
    field.name = "record." + field.name;
    field.offset += offsetof(HaNotice, record);
    fields.push_back(field);
  }
  return fields;
}

std::vector<Field> fieldsOf(Server server, Bytes request) {
  switch (server) {
    case Server::kZwave:
      return {TEMBRA_FIELD(ZwaveCommand, operation), TEMBRA_FIELD(ZwaveCommand, controllerCommand)};
    case Server::kZigbee:
      return {TEMBRA_FIELD(ZigbeeCommand, command), TEMBRA_FIELD(ZigbeeCommand, argument)};
    case Server::kHue:
      return {TEMBRA_FIELD(HueCommand, argument), TEMBRA_FIELD(HueCommand, bridgeId),
              TEMBRA_FIELD(HueCommand, command)};
    case Server::kNest:
      return {TEMBRA_FIELD(NestCommand, command), TEMBRA_FIELD(NestCommand, text)};
    case Server::kHa:
      return noticeFields(request);
  }
  return {};
}

#undef TEMBRA_FIELD

// The field that holds the offset; of a list the entry. Bytes between the fields have no name.
Field fieldAt(const std::vector<Field>& fields, std::size_t offset, std::size_t length) {
  const auto field = std::find_if(fields.begin(), fields.end(),
                                  [offset](const Field& it) { return it.offset <= offset && offset < it.end(); });
  if (field == fields.end()) {
    std::size_t end = length;
    for (const Field& next : fields) {
      if (next.offset > offset) end = std::min(end, next.offset);
    }
    return {"no field", offset, end - offset, 1, Content::kList};
  }
  if (field->content != Content::kList) return *field;
  const std::size_t entry = (offset - field->offset) / field->entry;
  return {field->name + "[" + std::to_string(entry) + "]", field->offset + entry * field->entry, field->entry, 1,
          Content::kList};
}

std::string spaced(Bytes bytes) {
  constexpr std::size_t most = 16;
  std::string text;
  for (const unsigned char byte : bytes.first(std::min(most, bytes.size()))) {
    text.append(text.empty() ? "" : " ").append(recording::hexadecimal({&byte, 1}));
  }
  return text + (bytes.size() > most ? " ..." : "");
}

std::string textAt(const Field& field, Bytes bytes) {
  const Bytes all = bytes.subspan(field.offset, field.size);
  const auto end = std::find(all.begin(), all.end(), 0);
  return '"' + printable(std::string(all.begin(), end)) + '"';
}

std::string numberAt(const Field& field, Bytes bytes) {
  std::uint32_t number = 0;
  for (std::size_t i = field.size; i > 0; --i) number = number << 8 | bytes[field.offset + i - 1];
  return std::to_string(static_cast<std::int32_t>(number));
}

/// @param part the bytes of the field that differ
std::string valueOf(const Field& field, Bytes bytes, std::pair<std::size_t, std::size_t> part) {
  std::string digits = spaced(bytes.subspan(part.first, part.second - part.first));
  if (field.content == Content::kText) return textAt(field, bytes) + " (" + digits + ")";
  if (field.content == Content::kNumber) return numberAt(field, bytes) + " (" + digits + ")";
  return digits;
}

std::size_t firstDifference(Bytes then, Bytes now, std::size_t from, std::size_t end) {
  while (from < end && then[from] == now[from]) ++from;
  return from;
}

std::string lineOf(const Field& field, Bytes then, Bytes now, std::size_t first) {
  std::size_t last = field.end() - 1;
  while (then[last] == now[last]) --last;
  return "offset " + std::to_string(first) + ", " + field.name + ": then " + valueOf(field, then, {first, last + 1}) +
         ", now " + valueOf(field, now, {first, last + 1});
}

}  // namespace

std::vector<std::string> differencesOf(Server server, Bytes then, Bytes now) {
  if (then.size() != now.size()) {
    return {"then " + std::to_string(then.size()) + " bytes, now " + std::to_string(now.size())};
  }
  const std::vector<unsigned char> thenSaid = meaningOf(server, then);
  const std::vector<unsigned char> nowSaid = meaningOf(server, now);
  const std::vector<Field> fields = fieldsOf(server, now);
  std::vector<std::string> lines;
  for (std::size_t at = 0; (at = firstDifference(thenSaid, nowSaid, at, now.size())) < now.size();) {
    Field field = fieldAt(fields, at, now.size());
    field.size = std::min(field.size, now.size() - field.offset);
    lines.push_back(lineOf(field, thenSaid, nowSaid, at));
    at = field.end();
  }
  return lines;
}

}  // namespace tembra::sim
