#include "cli/report/sources.h"

#include <pwd.h>
#include <sys/stat.h>
#include <sys/utsname.h>
#include <tembra/endpoints.h>
#include <tembra/frontend.h>
#include <tembra/version.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <system_error>

#include "cli/commands/database_file.h"
#include "cli/failure.h"
#include "cli/report/json_secrets.h"
#include "cli/words/texts.h"

namespace tembra::cli::report {
namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t kMostOfLog = 1 << 20;
constexpr std::uintmax_t kMostOfFile = 64 << 20;

std::string dottedVersion(int version) {
  return std::to_string(version / 10000) + "." + std::to_string(version / 100 % 100) + "." +
         std::to_string(version % 100);
}

std::string firstLine(const fs::path& path) {
  std::ifstream file(path);
  std::string line;
  std::getline(file, line);
  return line;
}

// A pipe would wait for its writer, and a folder has no bytes.
std::ifstream openRegular(const std::string& path) {
  struct stat status = {};
  if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
    throw Failure(kFailed, path + " is no file to read.");
  std::ifstream file(path, std::ios::binary);
  if (!file) throw Failure(kFailed, path + " cannot be read.");
  return file;
}

std::string valueOf(const doctor::Snapshot& database, const std::string& slot) {
  const auto found = database.values.find(slot);
  return found == database.values.end() ? "" : found->second;
}

struct Between {
  const char* before;
  const char* behind;  ///< empty: the end of the line
  Secret secret;
};

// The lines of the library that hold names.
constexpr Between kLogged[] = {{":Name:", " Location:", Secret::kName},
                               {" Location:", "", Secret::kPlace},
                               {":Sensor name ", " is removed (Zigbee)", Secret::kName},
                               {" name ", " (Zigbee)", Secret::kName},
                               {"libTembraAssoc:", " is Removing (Z-wave)", Secret::kName}};

// An event of the kit, behind whatever the log puts in front.
void learnFromEvent(const std::string& line, StandIns& standIns) {
  const std::size_t begin = line.find('{');
  if (begin == std::string::npos) return;
  const auto event =
      nlohmann::ordered_json::parse(line.begin() + static_cast<std::ptrdiff_t>(begin), line.end(), nullptr, false);
  if (event.is_object()) learnFrom(event, standIns);
}

// What a bridge says may stand within other text.
void learnUsers(const std::string& line, StandIns& standIns) {
  constexpr std::string_view kMember = "\"username\":";
  for (std::size_t at = line.find(kMember); at != std::string::npos; at = line.find(kMember, at + 1)) {
    const std::size_t begin = line.find_first_not_of(' ', at + kMember.size());
    if (begin == std::string::npos || line[begin] != '"') continue;
    standIns.learn(Secret::kUser, line.substr(begin + 1, line.find('"', begin + 1) - begin - 1));
  }
}

void learnFromLine(const std::string& line, StandIns& standIns) {
  learnFromEvent(line, standIns);
  learnUsers(line, standIns);
  for (const Between& place : kLogged) {
    const std::size_t before = line.find(place.before);
    if (before == std::string::npos) continue;
    const std::size_t begin = before + std::string_view(place.before).size();
    const std::size_t end = *place.behind == '\0' ? line.size() : line.rfind(place.behind);
    if (end != std::string::npos && end >= begin) standIns.learn(place.secret, line.substr(begin, end - begin));
  }
}

}  // namespace

std::string versionsText() {
  utsname system{};
  uname(&system);
  return "tembra-assoc " TEMBRA_VERSION_TEXT "\nlibTembraAssoc " + dottedVersion(tembra_version()) +
         "\nlibtembra-frontend " + dottedVersion(tembra_frontend_version()) + "\n" + system.sysname + " " +
         system.release + " " + system.machine + "\n";
}

std::string configurationText(const Context& context) {
  std::string text;
  for (char** setting = environ; *setting != nullptr; ++setting) {
    const std::string_view each = *setting;
    if (each.starts_with("TEMBRA_") || each.starts_with("PATH=")) text.append(each) += '\n';
  }
  for (const char* name : {"fs/protected_regular", "fs/protected_symlinks", "fs/protected_hardlinks",
                           "fs/protected_fifos", "net/core/rmem_default", "net/ipv4/conf/all/route_localnet"}) {
    text += std::string(name) + " = " + firstLine(fs::path("/proc/sys") / name) + "\n";
  }
  for (const char* const address : {assoc_adr, ha_assoc_adr, ozw_adr, zigbee_adr, hue_server_adr, nest_server_adr}) {
    text += std::string(address) + "\n";
  }
  text += "device database " + databasePath(context.options) + "\n";
  return text + "watch socket " + context.options.watchPath + "\nrole " + context.options.role + "\nuser id " +
         std::to_string(geteuid()) + "\n";
}

Objects deviceList(const doctor::Snapshot& database) {
  Objects list;
  list.push_back({{"next_id", database.nextId.value_or("")},
                  {"bytes", database.size},
                  {"records", database.records},
                  {"damage", database.damage}});
  for (const doctor::StoredRecord& stored : database.devices) {
    const DeviceRecord& device = stored.device;
    nlohmann::ordered_json row = {{"key", stored.key},
                                  {"id", device.id},
                                  {"name", fieldText(device.name)},
                                  {"type", fieldText(device.typeName)},
                                  {"radio_kind", device.radioKind},
                                  {"zwave_node", device.zwaveNode},
                                  {"zigbee_address", device.zigbeeAddress}};
    if (const auto slots = doctor::hueSlotsOf(stored)) {
      row["bridge"] = valueOf(database, slots->bridge);
      row["user"] = valueOf(database, slots->user);
    }
    list.push_back(std::move(row));
  }
  return list;
}

std::string endOfLog(const std::string& path) {
  std::ifstream file = openRegular(path);
  std::error_code failure;
  const std::uintmax_t size = fs::file_size(path, failure);
  if (!failure && size > kMostOfLog) file.seekg(static_cast<std::streamoff>(size - kMostOfLog));
  std::string text{std::istreambuf_iterator<char>(file), {}};
  if (!failure && size > kMostOfLog) text.erase(0, text.find('\n') + 1);
  return text;
}

std::string wholeFile(const std::string& path) {
  std::ifstream file = openRegular(path);
  std::error_code failure;
  if (fs::file_size(path, failure) > kMostOfFile) throw Failure(kFailed, path + " is larger than 64 MiB.");
  return {std::istreambuf_iterator<char>(file), {}};
}

void learnFromSystem(StandIns& standIns) {
  std::error_code failure;
  for (fs::directory_iterator each("/sys/class/net", failure), end; !failure && each != end; each.increment(failure)) {
    standIns.learnMacs(firstLine(each->path() / "address"));
  }
  utsname system{};
  if (uname(&system) == 0) standIns.learn(Secret::kName, system.nodename);
  constexpr uid_t kFirstPerson = 1000;
  constexpr uid_t kNobody = 65534;
  setpwent();
  while (const passwd* const user = getpwent()) {
    if (user->pw_uid >= kFirstPerson && user->pw_uid < kNobody) standIns.learn(Secret::kUser, user->pw_name);
  }
  endpwent();
  try {
    standIns.learn(Secret::kCode, withoutBlanksAround(endOfLog("/tmp/Authcode")));
  } catch (const Failure&) {
    return;  // no account is linked, or this user may not read its code
  }
}

void learnFromLog(const std::string& log, StandIns& standIns) {
  std::istringstream lines(log);
  for (std::string line; std::getline(lines, line);) learnFromLine(line, standIns);
  standIns.learnMacs(log);
}

}  // namespace tembra::cli::report
