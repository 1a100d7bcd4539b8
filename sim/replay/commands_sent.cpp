#include "sim/replay/commands_sent.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <string_view>

#include "sim/core/record_bytes.h"
#include "sim/ha/notice_check.h"
#include "sim/zigbee/descriptions.h"
#include "tembra/records.h"
#include "tembra/vocabulary.h"

namespace tembra::sim {
namespace {

using Request = std::span<const unsigned char>;

struct CommandName {
  Command command;
  std::string_view name;
};

constexpr CommandName kCommandNames[] = {
    {Command::kUnknown, "an unknown command"},
    {Command::kAdd, "add"},
    {Command::kRemove, "remove"},
    {Command::kCancel, "cancel"},
    {Command::kReset, "reset"},
    {Command::kResetEnd, "reset, second half"},
    {Command::kHueDiscover, "discover bridges"},
    {Command::kHueAdd, "add bridge"},
    {Command::kHueBulb, "add bulb"},
    {Command::kHueRefresh, "refresh bridge"},
    {Command::kHueRemove, "remove bridge"},
    {Command::kNestLink, "link the account"},
    {Command::kNestUnlink, "unlink the account"},
    {Command::kNoticeAdded, "added"},
    {Command::kNoticeRemoved, "removed"},
    {Command::kNoticeRemovedAll, "all devices removed"},
};

Command zwaveCommand(const ZwaveCommand& request) {
  if (request.operation == 1 && request.controllerCommand == 1) return Command::kAdd;
  if (request.operation == 1 && request.controllerCommand == 4) return Command::kRemove;
  if (request.controllerCommand != 0) return Command::kUnknown;
  if (request.operation == 4) return Command::kCancel;
  return request.operation == 5 ? Command::kReset : Command::kUnknown;
}

Command zigbeeCommand(const ZigbeeCommand& request) {
  struct Row {
    std::string_view text;
    std::string_view argument;
    Command command;
  };
  constexpr Row rows[] = {{"option button1", "IAS", Command::kAdd},
                          {" ", "remove", Command::kRemove},
                          {"network pjoin 0", "cancel", Command::kCancel},
                          {"n l", "", Command::kReset},
                          {"option button0", "", Command::kResetEnd}};
  const std::string text = textIn(request.command);
  const std::string argument = textIn(request.argument);
  const auto* const row = std::find_if(std::begin(rows), std::end(rows),
                                       [&](const Row& it) { return it.text == text && it.argument == argument; });
  return row == std::end(rows) ? Command::kUnknown : row->command;
}

Command hueCommand(unsigned code) {
  switch (code) {
    case HUE_DISCOVER:
      return Command::kHueDiscover;
    case HUE_ADD_BRIDGE:
      return Command::kHueAdd;
    case HUE_ADD_BULB:
      return Command::kHueBulb;
    case HUE_REFRESH:
      return Command::kHueRefresh;
    case HUE_REMOVE:
      return Command::kHueRemove;
    default:
      return Command::kUnknown;
  }
}

Command nestCommand(unsigned code) {
  if (code == NEST_LINK) return Command::kNestLink;
  return code == NEST_UNLINK ? Command::kNestUnlink : Command::kUnknown;
}

Command noticeCommand(const HaNotice& notice) {
  if (isRemoveAll(notice)) return Command::kNoticeRemovedAll;
  if (notice.recordKind == RECORD_ZWAVE) {
    const unsigned char mark = recordFrom<ZwNodeInfo>(notice.record).requestMark;
    if (mark == MARK_ADDED) return Command::kNoticeAdded;
    return mark == MARK_REMOVED ? Command::kNoticeRemoved : Command::kUnknown;
  }
  if (notice.recordKind != RECORD_ZIGBEE) return Command::kUnknown;
  const unsigned char code = recordFrom<ZbDeviceInfo>(notice.record).msgCode;
  if (code == ZIGBEE_NOTICE_ADDED) return Command::kNoticeAdded;
  return code == ZIGBEE_NOTICE_REMOVED ? Command::kNoticeRemoved : Command::kUnknown;
}

template <std::size_t N>
void clear(unsigned char (&field)[N]) {
  std::memset(field, 0, N);
}

template <std::size_t N>
void clearBehindText(char (&field)[N]) {
  const std::size_t used = strnlen(field, N);
  std::memset(field + used, 0, N - used);
}

void dropUnread(HueCommand& request) {
  const Command command = hueCommand(request.command);
  clear(request.at0);
  clear(request.at224);
  if (command == Command::kHueDiscover) request.bridgeId[0] = '\0';
  if (command != Command::kHueBulb && command != Command::kHueRefresh) request.argument[0] = '\0';
  clearBehindText(request.bridgeId);
  clearBehindText(request.argument);
}

// Of a node that left, the block still holds what the library knew last.
void dropUnread(ZwNodeInfo& node) {
  if (node.requestMark == MARK_REMOVED) {
    const ZwNodeInfo removed = node;
    node = {};
    node.nodeId = removed.nodeId;
    node.deviceKind = removed.deviceKind;
    node.requestMark = removed.requestMark;
  }
  clearBehindText(node.name);
  clearBehindText(node.location);
}

// A name without an end within its field runs on into the location.
void dropUnread(ZbDeviceInfo& device) {
  if (terminated(device.name)) clearBehindText(device.name);
  clearBehindText(device.location);
}

template <typename Record>
void dropUnreadOfNotice(HaNotice& notice) {
  auto record = recordFrom<Record>(notice.record);
  dropUnread(record);
  clear(notice.record);
  std::memcpy(notice.record, &record, sizeof record);
}

void dropUnread(HaNotice& notice) {
  if (isRemoveAll(notice)) {
    clear(notice.record);
    std::memcpy(notice.record, kRemoveAllText, sizeof kRemoveAllText);
  } else if (notice.recordKind == RECORD_ZWAVE) {
    dropUnreadOfNotice<ZwNodeInfo>(notice);
  } else if (notice.recordKind == RECORD_ZIGBEE) {
    dropUnreadOfNotice<ZbDeviceInfo>(notice);
  }
}

template <typename Record>
std::vector<unsigned char> meaningOfRecord(Request request) {
  auto record = recordFrom<Record>(request);
  dropUnread(record);
  return bytesOf(record);
}

std::string noticeDetail(Request request) {
  const auto notice = recordFrom<HaNotice>(request);
  const bool isNode = notice.recordKind == RECORD_ZWAVE;
  const auto node = recordFrom<ZwNodeInfo>(notice.record);
  const auto device = recordFrom<ZbDeviceInfo>(notice.record);
  if (commandIn(Server::kHa, request) == Command::kNoticeAdded) {
    return ": " + (isNode ? textIn(node.name) : textIn(device.name));
  }
  if (commandIn(Server::kHa, request) != Command::kNoticeRemoved) return "";
  return ": " + (isNode ? "node " + std::to_string(node.nodeId) : addressText(device.shortAddress));
}

}  // namespace

Command commandIn(Server server, Request request) {
  switch (server) {
    case Server::kZwave:
      return zwaveCommand(recordFrom<ZwaveCommand>(request));
    case Server::kZigbee:
      return zigbeeCommand(recordFrom<ZigbeeCommand>(request));
    case Server::kHue:
      return hueCommand(recordFrom<HueCommand>(request).command);
    case Server::kNest:
      return nestCommand(recordFrom<NestCommand>(request).command);
    case Server::kHa:
      return noticeCommand(recordFrom<HaNotice>(request));
  }
  return Command::kUnknown;
}

std::string describe(Server server, Request request) {
  const Command command = commandIn(server, request);
  const auto* const row = std::find_if(std::begin(kCommandNames), std::end(kCommandNames),
                                       [command](const CommandName& it) { return it.command == command; });
  return std::string(row->name) + (server == Server::kHa ? noticeDetail(request) : "");
}

std::vector<unsigned char> meaningOf(Server server, Request request) {
  if (server == Server::kHue && request.size() == sizeof(HueCommand)) return meaningOfRecord<HueCommand>(request);
  if (server == Server::kHa && request.size() == sizeof(HaNotice)) return meaningOfRecord<HaNotice>(request);
  return {request.begin(), request.end()};
}

}  // namespace tembra::sim
