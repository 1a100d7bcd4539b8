// tembra-assoc devices: the device list, without asking any server.
#include <sys/stat.h>
#include <tembra/globals.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <nlohmann/json.hpp>
#include <tembra/frontend.hpp>

#include "cli/commands/commands.h"
#include "cli/commands/database_file.h"
#include "cli/dialogue/library_call.h"
#include "cli/display/json_line.h"
#include "cli/display/terminal.h"
#include "cli/failure.h"
#include "cli/words/texts.h"
#include "platform/printable.h"

namespace tembra::cli {
namespace {

constexpr std::chrono::seconds kForWriter{1};
// Characters of a name in a table; --json has it whole.
constexpr std::size_t kLongestName = 40;
constexpr std::size_t kShortestName = 10;

struct Listed {
  std::vector<tembra_device> devices;
  int error = 0;
};

Listed readListed() {
  Listed list;
  if (access(DBName, F_OK) != 0 && errno == ENOENT) return {{}, ENOENT};
  while (true) {
    const std::size_t room = list.devices.size();
    const long count = tembra_read_devices(list.devices.data(), sizeof(tembra_device), room);
    if (count < 0) {
      list.error = errno;
      const auto isUnread = [](const tembra_device& device) { return device.name[0] == '\0' && device.id == 0; };
      // A damaged file has no count: what can be read of it fills the room from its beginning.
      const bool isFull = room == 0 || !isUnread(list.devices.back());
      if (list.error == EBADMSG && isFull && room < 4096) {
        list.devices.assign(room == 0 ? 64 : room * 2, {});
        continue;
      }
      std::erase_if(list.devices, isUnread);
      return list;
    }
    const bool isWhole = static_cast<std::size_t>(count) <= room;
    list.devices.resize(static_cast<std::size_t>(count));
    if (isWhole) return list;
  }
}

std::string addressText(const tembra_device& device) {
  if (device.radio == TEMBRA_RADIO_ZWAVE) return std::to_string(device.address);
  if (device.radio != TEMBRA_RADIO_ZIGBEE) return "";
  char text[16];
  std::snprintf(text, sizeof text, "0x%04x", device.address);
  return text;
}

using Row = std::vector<std::string>;

Row row(const tembra_device& device, std::size_t nameRoom) {
  std::string name = printable(device.name);
  if (characters(name) > nameRoom) name = firstCharacters(name, nameRoom - 2) + "..";
  return {std::to_string(device.id),   name,
          printable(device.type_name), tembra_radio_name(device.radio),
          addressText(device),         std::to_string(device.values)};
}

std::string deviceTable(const std::vector<tembra_device>& devices, std::size_t nameRoom) {
  std::vector<Row> rows = {{"Id", "Name", "Type", "Radio", "Address", "Values"}};
  for (const tembra_device& device : devices) rows.push_back(row(device, nameRoom));
  std::vector<std::size_t> widths(rows[0].size());
  for (const Row& each : rows) {
    for (std::size_t i = 0; i < each.size(); ++i) widths[i] = std::max(widths[i], characters(each[i]));
  }
  std::string table;
  for (const Row& each : rows) {
    std::string line;
    for (std::size_t i = 0; i < each.size(); ++i) {
      line += each[i] + std::string(widths[i] - characters(each[i]) + 2, ' ');
    }
    if (!table.empty()) table += '\n';
    table += line.substr(0, line.find_last_not_of(' ') + 1);
  }
  return table;
}

// Names are cut rather than lines broken, as far as that helps.
void printDevices(const std::vector<tembra_device>& devices) {
  const auto fits = [room = roomOfTerminal(STDOUT_FILENO)](const std::string& table) {
    return !room || characters(table.substr(0, table.find('\n'))) <= *room;
  };
  std::size_t nameRoom = kLongestName;
  std::string table = deviceTable(devices, nameRoom);
  while (!fits(table) && nameRoom > kShortestName) table = deviceTable(devices, --nameRoom);
  printText(table);
}

// In the form of the kit's events: a number beside its name, and null for what there is not.
nlohmann::ordered_json deviceJson(const tembra_device& device) {
  using Json = nlohmann::ordered_json;
  const bool isOnRadio = device.radio == TEMBRA_RADIO_ZIGBEE || device.radio == TEMBRA_RADIO_ZWAVE;
  return {{"id", device.id},
          {"name", device.name},
          {"type", {{"number", device.type}, {"name", device.type_name}}},
          {"radio", device.radio == TEMBRA_RADIO_OTHER ? Json() : Json(tembra_radio_name(device.radio))},
          {"address", isOnRadio ? Json(device.address) : Json()},
          {"values", device.values}};
}

bool isRegular() {
  struct stat status = {};
  return stat(DBName, &status) == 0 && S_ISREG(status.st_mode);
}

std::string whyUnread(const std::string& path, int error) {
  if (error == ENOENT) {
    return "there is no device database yet at " + path + ": the home-automation server creates it.";
  }
  if (error == EISDIR) return path + " is a folder, not a device database.";
  if (error != ELOOP && !isRegular()) return path + " is no regular file, not a device database.";
  const std::string database = "the device database " + path;
  if (error == EBADMSG) return database + " is damaged, or none: there may be devices that cannot be read.";
  if (error == ELOOP) return database + " is a link that belongs to another user, and is not followed.";
  return database + " cannot be read (" + std::strerror(error) + ").";
}

// The library waits for a writer without end; the user need not.
Listed readInTime(const Context& context) {
  const auto list = std::make_shared<Listed>();
  if (runLibraryCall(
          context, [list] { *list = readListed(); }, kForWriter))
    return std::move(*list);
  throw Failure(kFailed, "the device database " + databasePath(context.options) + " stays locked by another process.");
}

void listDevices(const Context& context) {
  Listed list = readInTime(context);
  std::ranges::stable_sort(list.devices, {}, &tembra_device::id);
  const bool hasTable = list.error == 0 || !list.devices.empty();
  if (context.options.json) {
    for (const tembra_device& device : list.devices) printLine(jsonLine(deviceJson(device)));
  } else if (hasTable) {
    printDevices(list.devices);
  }
  if (list.error != 0) throw Failure(kFailed, whyUnread(databasePath(context.options), list.error));
}

}  // namespace

void declareDevices(CLI::App& program, Action& action) {
  CLI::App* command = program.add_subcommand("devices", "list the devices of the device database");
  command->callback([&action] { action = listDevices; });
}

}  // namespace tembra::cli
