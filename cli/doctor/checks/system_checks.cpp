// What the library expects of the rest of the router: settings, platform libraries, versions.
#include <dlfcn.h>
#include <tembra/service.h>
#include <tembra/version.h>
#include <tembra/vocabulary.h>

#include <cstring>
#include <filesystem>
#include <map>
#include <tembra/frontend.hpp>

#include "cli/doctor/checks/checks.h"
#include "cli/doctor/facts/bounded_command.h"
#include "cli/doctor/facts/router.h"
#include "cli/words/texts.h"
#include "platform/printable.h"

namespace tembra::cli::doctor {
namespace {

constexpr char kNvramCommand[] = "nvram_get 2860 MeshSlaveID";
constexpr std::chrono::seconds kForNvram{2};
constexpr std::size_t kMostOfSetting = 9;  // that the library reads

bool isWholeNumber(const std::string& text) {
  const std::size_t sign = text.starts_with('-') ? 1 : 0;
  return text.size() > sign && text.find_first_not_of("0123456789", sign) == std::string::npos;
}

// The functions of <tembra/platform.h> by the names that the linker knows.
constexpr const char* kPlatformFunctions[] = {
    "_ZN6Logger11getInstanceEv", "_ZN6Logger3LogEiPKc", "_Z16DevtypeEnumToStr7DevTypePc",
    "_Z12StrToDevTypePKc",       "_Z11parse_json2PKci", "_Z15find_json_tokenP9JsonTokenPKc"};

// As the compiler calls a function in a text: "StrToDevType".
std::string plainName(const std::string& mangled) {
  const std::size_t digits = mangled.find_first_of("0123456789");
  const std::size_t begin = mangled.find_first_not_of("0123456789", digits);
  return mangled.substr(begin, std::strtoul(mangled.c_str() + digits, nullptr, 10));
}

// Behind this program, which has a logger of its own for `classify`.
std::string fileOf(const char* function) {
  Dl_info info{};
  void* const address = dlsym(RTLD_NEXT, function);
  return address != nullptr && dladdr(address, &info) != 0 && info.dli_fname != nullptr ? info.dli_fname : "";
}

// A number of no type is "DevType" and the number there, and nowhere else.
bool areStandIns() {
  constexpr int kNoType = 9999;
  const char* const name = tembra_type_name(kNoType);
  return name != nullptr && std::strcmp(name, "DevType9999") == 0;
}

struct NamedType {
  int number;
  const char* name;
};
constexpr NamedType kNeededNames[] = {{DEVTYPE_GENERIC_DEVICE, "GenericDevice"},
                                      {DEVTYPE_BINARY_SWITCH, "BinarySwitch"},
                                      {DEVTYPE_MULTILEVEL_SWITCH, "MultilevelSwitch"},
                                      {DEVTYPE_MULTILEVEL_SWITCH_ON_OFF, "MultilevelSwitchOnOff"},
                                      {DEVTYPE_MULTI_SWITCH, "MultiSwitch"}};

std::string versionNumber(int version) {
  return std::to_string(version / 10000) + "." + std::to_string(version / 100 % 100) + "." +
         std::to_string(version % 100);
}

// A program works with every library of the same major number that is not older than its headers.
bool fits(int library, int headers) { return library / 10000 == headers / 10000 && library >= headers; }

// As the library reads the setting: the number at the beginning of the first characters, and 0 without one.
Verdict verdictOnMeshId(const Answer& answer) {
  const std::string line = answer.output.substr(0, answer.output.find('\n'));
  const std::string read = line.substr(0, kMostOfSetting);
  const std::string said = withoutBlanksAround(line);
  const std::string id = std::to_string(std::atoi(read.c_str()));
  const std::string proof = std::string(kNvramCommand) + ": " +
                            (said.empty() ? "nothing" : "\"" + printable(said) + "\"") + ", exit status " +
                            std::to_string(answer.status) + ".";
  if (said.empty()) return note("The mesh id of this router is not set, and counts as 0.", proof);
  if (said == withoutBlanksAround(read) && isWholeNumber(said))
    return well("The mesh id of this router is " + id + ".");
  return finding("The command nvram_get gives no number of at most 9 characters for the mesh id.", proof,
                 "Set MeshSlaveID in the router's settings; until then it counts as " + id + ".");
}

}  // namespace

Verdict checkNvram(Router& router) {
  const Answer answer = runCommand(router.context(), kNvramCommand, kForNvram);
  const std::string proof = std::string(kNvramCommand) + ": ";
  const std::string advice =
      "Put the router's nvram_get into the PATH of the front ends; until then the mesh id counts as 0.";
  constexpr int kNotFound = 127;
  if (answer.error != 0)
    return finding("The router's settings cannot be asked.", proof + std::strerror(answer.error) + ".", advice);
  if (answer.isLate) {
    return finding("The command nvram_get does not end, so no connection can be opened.", proof + "no end in 2 s.",
                   "See what it waits for; it runs each time that a front end opens its connection.");
  }
  if (answer.status == kNotFound) return finding("There is no command nvram_get.", proof + "not found.", advice);
  return verdictOnMeshId(answer);
}

Verdict checkPlatform(Router& /*router*/) {
  std::map<std::string, std::string> functionsOf;
  for (const char* const function : kPlatformFunctions) {
    std::string& functions = functionsOf[fileOf(function)];
    functions += (functions.empty() ? "" : ", ") + plainName(function);
  }
  const std::string file = functionsOf.begin()->first;
  if (functionsOf.size() == 1 && !areStandIns())
    return well("The router's own platform libraries are used: " + file + ".");
  if (functionsOf.size() == 1) return note("The stand-ins are used in place of the router's own libraries.", file);
  std::string all;
  for (const auto& [from, functions] : functionsOf) {
    all += all.empty() ? "" : "; ";
    all.append(functions).append(" of ").append(from);
  }
  return note("The platform functions come from several libraries.", all + ".");
}

Verdict checkPlatformNames(Router& /*router*/) {
  for (const NamedType& type : kNeededNames) {
    const char* const name = tembra_type_name(type.number);
    const std::string told = name == nullptr ? "" : printable(std::string(name));
    if (told == type.name && tembra_type_number(type.name) == type.number) continue;
    return finding("The device-type library does not know the names that the library counts on.",
                   "type " + std::to_string(type.number) + " is \"" + told + "\" in place of \"" + type.name +
                       "\", which reads back as " + std::to_string(tembra_type_number(type.name)) + ".",
                   "Bring the router's device-type library to the version that fits.");
  }
  return well("The device-type library knows the names that the library counts on.");
}

Verdict checkVersions(Router& /*router*/) {
  const int library = tembra_version();
  const int kit = tembra_frontend_version();
  const std::string all = "libTembraAssoc " + versionNumber(library) + ", libtembra-frontend " + versionNumber(kit) +
                          ", tembra-assoc " + TEMBRA_VERSION_TEXT;
  if (fits(library, TEMBRA_VERSION) && fits(kit, TEMBRA_VERSION) && fits(library, kit))
    return well("The versions fit: " + all + ".");
  return finding("Library, kit and programs do not fit each other.", all + ".",
                 "Install all of one version; the library may be newer within the same first number.");
}

}  // namespace tembra::cli::doctor
