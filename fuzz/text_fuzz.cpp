// Addresses, names and the other texts that callers give or get.
#include <tembra/assoc.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <string>

#include "support/plain_router.h"
#include "support/script.h"

namespace {

using fuzz::CallersText;
using fuzz::ExactBytes;
using fuzz::require;
using fuzz::Script;

constexpr std::size_t kDefaultNameRoom = 192;
constexpr std::size_t kPlatformNameRoom = 180;

// What the router's library calls every device type.
std::string typeName;  // NOLINT: it stands for another library's state

class TextRouter : public fuzz::PlainRouter {
 public:
  void print(CallersText text) { text_ = std::move(text); }
  [[nodiscard]] const char* settings() const override { return text_.get() == nullptr ? "" : text_.get(); }
  bool strikes(fuzz::Fault fault) override { return fault == fuzz::Fault::kPipe && text_.get() == nullptr; }

 private:
  CallersText text_;
};

void resolve(Script& script) {
  constexpr int longest = 64;
  int length = std::clamp(script.smallNumber(), -1, longest);
  const ExactBytes address(std::max<std::size_t>(sizeof(sockaddr_in), static_cast<std::size_t>(std::max(length, 0))));
  std::memset(address.data(), 0xAA, address.size());
  const CallersText protocol = script.text();
  const CallersText text = script.text();
  const int result = mkaddr(address.data(), &length, text.get(), protocol.get());
  require(result == 0 || result == -1 || result == -2, "an address is good, or its host or its port is bad");
  if (result != 0) return;
  require(length == sizeof(sockaddr_in), "a good address has its length");
  sockaddr_in resolved{};
  std::memcpy(&resolved, address.data(), sizeof resolved);
  require(resolved.sin_family == AF_INET, "an address is an IPv4 address");
  printAddrInfo(resolved);
}

void rewriteBridge(Script& script) {
  const CallersText text = script.text();
  const ExactBytes bridgeId(17);
  const ExactBytes mac(18);
  auto* id = reinterpret_cast<char*>(bridgeId.data());
  require(RevertHueMac(text.get(), id) == 16 && id[16] == '\0', "a bridge id has 16 characters");
  require(HueMac(id, reinterpret_cast<char*>(mac.data())) == 17 && mac.data()[17] == 0, "a MAC text has 17");
  require(HueMac(text.get(), reinterpret_cast<char*>(mac.data())) == 17, "whatever the bridge id");
}

void nameDevice(Script& script) {
  typeName.assign(kPlatformNameRoom - 1, 'n');
  const CallersText name = script.text();
  if (name.get() != nullptr) typeName = std::string(name.get()).substr(0, kPlatformNameRoom - 1);
  const ExactBytes out(kDefaultNameRoom);
  auto* text = reinterpret_cast<char*>(out.data());
  const int length = getDefaultDevName(static_cast<DevType>(script.smallNumber()), script.read<int>(), text);
  require(length >= 0 && static_cast<std::size_t>(length) == strnlen(text, out.size()),
          "a default name has its length");
  require(getDefaultDevName(DEVTYPE_SIREN, 1, nullptr) == 0, "no room, no name");
  TembraAssociation& assoc = fuzz::Stage::current()->assoc();
  assoc.setDevType(DEVTYPE_SIREN);
  assoc.setDevName(name.get());
  assoc.setDevLocation(name.get());
  require(fuzz::isTerminated(assoc.devName) && fuzz::isTerminated(assoc.devLocation), "name and location end");
}

void lookUpNames(Script& script) {
  const unsigned char number = script.byte();
  const char* name = cclassStr(number);
  const unsigned found = cclassNum(name);
  require(found == number || found == 0 || found == 255, "a name leads back to its number, or nowhere");
  const CallersText text = script.text();
  if (text.get() != nullptr) require(cclassNum(text.get()) <= 255, "numbers of command classes are bytes");
  const int value = script.smallNumber();
  const char* texts[] = {
      OperationCodeenumToString(static_cast<ozw_OperationCode>(value)),
      ControllerCommandenumToString(static_cast<ozw_ControllerCommand>(value)),
      NotificationenumToString(static_cast<ozw_NotificationType>(value)),
      controllerStateStr(static_cast<ozw_ControllerState>(value)),
      controllerErrorStr(static_cast<ozw_ControllerError>(value)),
      enumValueGenreStr(static_cast<ozw_ValueGenre>(value)),
      valueTypeStr(static_cast<ozw_ValueType>(value)),
  };
  require(std::ranges::all_of(texts, [](const char* each) { return each[0] != '\0'; }), "every value has a text");
}

void readMeshId(Script& script, TextRouter& router) {
  router.print(script.text());
  const ExactBytes out(10);
  const int result = GetMeshId(reinterpret_cast<char*>(out.data()));
  require(result == 0 || result == -1, "the mesh id is read or not");
  require(std::memchr(out.data(), 0, out.size()) != nullptr, "the mesh id ends");
  static_cast<void>(GetMeshId());
}

}  // namespace

// This program brings a device-type library of its own, as a router does.
void DevtypeEnumToStr(DevType /*type*/, char* out) { std::memcpy(out, typeName.c_str(), typeName.size() + 1); }
DevType StrToDevType(const char* /*name*/) { return DEVTYPE_UNKNOWN; }

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Script script(data, size);
  TextRouter router;
  const fuzz::IdStage stage(router);
  switch (script.choose(5)) {
    case 0:
      resolve(script);
      break;
    case 1:
      rewriteBridge(script);
      break;
    case 2:
      nameDevice(script);
      break;
    case 3:
      lookUpNames(script);
      break;
    default:
      readMeshId(script, router);
  }
  return 0;
}
