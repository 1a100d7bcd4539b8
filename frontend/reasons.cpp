#include "reasons.h"

#include <tembra/frontend.h>

#include <cerrno>
#include <cstring>
#include <iterator>

#include "names.h"

namespace tembra::frontend {
namespace {

// For the middle of a sentence, by tembra_phase.
constexpr const char* kWhen[] = {"",
                                 "while the connection was being opened",
                                 "before anybody pressed a button",
                                 "before it said which one it is",
                                 "while it described itself",
                                 "while its type and name were chosen",
                                 "while it was being stored",
                                 "while it was leaving",
                                 "before it answered",
                                 "before the link button was pressed",
                                 "while the radios started anew",
                                 "while the device list was read",
                                 "while the connection was being closed",
                                 "before the button of the known device was pressed",
                                 "while the device list was emptied"};

constexpr Reason kReasons[] = {
    {TEMBRA_REASON_NONE, "none", "Done.", ""},
    {TEMBRA_REASON_CANCELLED, "cancelled", "Cancelled.", ""},
    {TEMBRA_REASON_CANCELLED_JOINED, "cancelled-joined",
     "Cancelled. The device{named} joined the radio network, but was not kept.",
     "Remove the device, or it stays in the radio network unseen."},
    {TEMBRA_REASON_CANCELLED_LATE, "cancelled-late", "Cancelled too late: what was asked for may be done all the same.",
     "Look whether it was done before you try again."},
    {TEMBRA_REASON_IN_USE, "in-use", "Another front end has the connection{holder}.",
     "Wait until it is done, or cancel what it does."},
    {TEMBRA_REASON_NO_SOCKET, "no-socket", "The connection could not be opened{error}.",
     "Look at the router's network and its limits; the loopback interface must be up."},
    {TEMBRA_REASON_NO_THREAD, "no-thread", "The library has no thread to receive with{error}.",
     "The router is short of memory or processes: end something else."},
    {TEMBRA_REASON_NO_RADIO_SERVER, "no-radio-server", "Neither a Z-Wave nor a ZigBee server runs on this router.",
     "Start the radio servers."},
    {TEMBRA_REASON_ONE_RADIO_SERVER, "one-radio-server",
     "The {server} server does not run on this router: no {server} device can answer.", "Start the {server} server."},
    {TEMBRA_REASON_NO_SERVER, "no-server", "The {server} server does not run on this router.",
     "Start the {server} server."},
    {TEMBRA_REASON_NOT_SENT, "not-sent", "Nothing can be sent to the {server} server{error}.",
     "Look at the router's network and its firewall rules for the loopback interface."},
    {TEMBRA_REASON_CONNECTION_LOST, "connection-lost", "The connection was closed {phase}.",
     "Try again. A late answer of the Hue or Nest server closes a web server's connection; else something in this "
     "program "
     "closes descriptors that are not its own."},
    {TEMBRA_REASON_NO_ANSWER, "no-answer", "The {server} server did not answer in time.",
     "Try again; start the {server} server anew if that does not help."},
    {TEMBRA_REASON_OTHER_ANSWER, "other-answer", "The {server} server gave an answer that does not fit.", "Try again."},
    {TEMBRA_REASON_NOT_WATCHED, "not-watched", "Other front ends cannot watch or cancel what this one does{why}.",
     "Look at the folder of the watch socket and its rights."},
    {TEMBRA_REASON_NO_MEMORY, "no-memory", "This program is short of memory.", "End something else and try again."},
    {TEMBRA_REASON_NOBODY_PRESSED, "nobody-pressed", "No device answered in time.",
     "Press the button of the device. To add a device that another controller knows, remove it first."},
    {TEMBRA_REASON_DEVICE_SILENT, "device-silent", "The device{named} fell silent {phase}.",
     "Wake the device, keep it near the router and try again. It may be in the radio network already: remove it "
     "first."},
    {TEMBRA_REASON_RADIO_FAILED, "radio-failed", "The {server} radio gave up.",
     "Keep the device near the router and try again."},
    {TEMBRA_REASON_UNKNOWN_KIND, "unknown-kind", "The device{named} described itself, but it fits no kind of device.",
     "The device joined the radio network, but was not kept: remove it, or it stays there unseen."},
    {TEMBRA_REASON_ALREADY_KNOWN, "already-known", "The device is known already{device}.",
     "To add it anew, remove it first."},
    {TEMBRA_REASON_NOT_IN_LIST, "not-in-list", "The device that left is not in the device list.",
     "Nothing else is to be done. A ZigBee radio that failed says the same: try again if the device is still there."},
    {TEMBRA_REASON_CHOICE_TOO_SLOW, "choice-too-slow", "Type and name of the device{named} were not chosen in time.",
     "The device joined the radio network, but was not kept: remove it and add it again."},
    {TEMBRA_REASON_NOT_STORED, "not-stored", "The HA server did not store the device{named}.",
     "The device joined the radio network, but was not kept: remove it and add it again."},
    {TEMBRA_REASON_OTHER_LEFT, "other-left", "Another device{named} left.",
     "Add the device that left, and try again with the button of the right one."},
    {TEMBRA_REASON_LEFT, "left", "The device{named} left, and was not added again.", "Add the device with its name."},
    {TEMBRA_REASON_DEVICES_REMAIN, "devices-remain", "The HA server kept{which} in the device list.",
     "Look at the list of devices. Remove each by itself, a Hue bridge's bulbs by their bridge."},
    {TEMBRA_REASON_DATABASE_DAMAGED, "database-damaged",
     "The device list is damaged. Devices may be missing, and the library may repair it when it is used.",
     "Look at the list of devices."},
    {TEMBRA_REASON_DATABASE_UNREADABLE, "database-unreadable", "The device list cannot be read{error}.",
     "Run all front ends and the HA server as the same user, and see that the file is not kept locked."},
    {TEMBRA_REASON_LINK_BUTTON, "link-button", "The link button of the Hue bridge was not pressed in time.",
     "Press the round button on the bridge and try again."},
    {TEMBRA_REASON_NO_BRIDGE, "no-bridge", "There is no such Hue bridge in the home's network.",
     "Look for the bridges again."},
    {TEMBRA_REASON_UNKNOWN_BRIDGE, "unknown-bridge", "This Hue bridge has not been added.", "Add the bridge first."},
    {TEMBRA_REASON_HUE_FAILED, "hue-failed", "The Hue server failed.", "Try again."},
    {TEMBRA_REASON_NEST_REFUSED, "nest-refused", "The Nest server refused.",
     "For a link: ask for a new authorisation code, because each is good once."},
};

// What is empty is left out with the words before it.
std::string behind(const char* words, const std::string& text) { return text.empty() ? "" : words + text; }

const char* whenOf(int phase) {
  return phase >= 0 && phase < static_cast<int>(std::size(kWhen)) ? kWhen[phase] : nullptr;
}

struct RefusalText {
  int error;
  const char* text;
};
constexpr RefusalText kRefusalTexts[] = {{0, ""},
                                         {EBUSY, "Something else is still under way."},
                                         {ESRCH, "There is nothing to do this with."},
                                         {EINVAL, "This is not possible."},
                                         {EMSGSIZE, "This text is too long."},
                                         {EILSEQ, "This text has characters that are not allowed."},
                                         {EBADF, "The front-end kit could not be made."}};

std::string valueOf(std::string_view key, const Filling& filling) {
  if (key == "server") return serverName(filling.server) == nullptr ? "unknown" : serverName(filling.server);
  if (key == "error" && filling.error != 0) return std::string(" (") + std::strerror(filling.error) + ")";
  if (key == "device") return behind(" as ", filling.device);
  if (key == "named") return behind(" ", filling.device);
  if (key == "which") return " " + (filling.device.empty() ? "some devices" : filling.device);
  if (key == "why") return behind(": ", filling.why);
  if (key == "holder") return behind(": ", filling.holder);
  return key == "phase" && whenOf(filling.phase) != nullptr ? whenOf(filling.phase) : "";
}

}  // namespace

const Reason* findReason(int reason) {
  for (const Reason& each : kReasons) {
    if (each.number == reason) return &each;
  }
  return nullptr;
}

const char* reasonName(int reason) {
  const Reason* found = findReason(reason);
  return found == nullptr ? nullptr : found->name;
}

std::string filled(std::string_view sentence, const Filling& filling) {
  std::string text;
  while (!sentence.empty()) {
    const std::size_t open = sentence.find('{');
    text += sentence.substr(0, open);
    if (open == std::string_view::npos) break;
    const std::size_t close = sentence.find('}', open);
    text += valueOf(sentence.substr(open + 1, close - open - 1), filling);
    sentence.remove_prefix(close + 1);
  }
  return text;
}

}  // namespace tembra::frontend

using namespace tembra::frontend;

const char* tembra_reason_name(int reason) { return reasonName(reason); }

const char* tembra_reason_text(int reason) {
  const Reason* found = findReason(reason);
  return found == nullptr ? nullptr : found->text;
}

const char* tembra_reason_advice(int reason) {
  const Reason* found = findReason(reason);
  return found == nullptr ? nullptr : found->advice;
}

const char* tembra_phase_text(int phase) { return whenOf(phase); }

const char* tembra_refusal_text(int error) {
  for (const RefusalText& each : kRefusalTexts) {
    if (each.error == error) return each.text;
  }
  return std::strerror(error);
}
