// The C face: checks what the caller hands in, and hands the rest to the worker.
#include <tembra/frontend.h>
#include <tembra/platform.h>
#include <tembra/version.h>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <memory>
#include <mutex>
#include <new>

#include "history.h"
#include "names.h"
#include "texts.h"
#include "worker.h"

using namespace tembra::frontend;

namespace {

constexpr std::size_t kLongestHueText = 49;
constexpr std::size_t kLongestCode = 247;
constexpr int kLongestForLinkButton = 600;

std::atomic<bool> exists{false};

std::string_view viewOf(const char* text) { return text == nullptr ? std::string_view() : text; }

int checkText(std::string_view text, std::size_t longest) {
  if (text.size() > longest) return EMSGSIZE;
  return isPlainText(text) ? 0 : EILSEQ;
}

// The library takes any text; only one of this form becomes a bridge's id.
bool isMac(std::string_view text) {
  constexpr std::string_view form = "xx:xx:xx:xx:xx:xx";
  if (text.size() != form.size()) return false;
  for (std::size_t i = 0; i < form.size(); ++i) {
    const bool good = form[i] == ':' ? text[i] == ':' : std::isxdigit(static_cast<unsigned char>(text[i])) != 0;
    if (!good) return false;
  }
  return true;
}

// What was refused is recorded here, and everything else by the inbox, before anything comes of it.
int answer(const char* call, int error) {
  if (error != 0) history().call(call, {}, error);
  return error;
}

int answer(int operation, int error) { return answer(operationName(operation), error); }

// No exception leaves a C function.
template <typename Function>
int orNoMemory(Function function) {
  try {
    return function();
  } catch (const std::bad_alloc&) {
    return ENOMEM;
  }
}

int start(tembra_frontend* kit, Command command);

int startForBridge(tembra_frontend* kit, int operation, const char* mac, const char* text, int seconds = 0) {
  if (!isMac(viewOf(mac))) return answer(operation, EINVAL);
  if (const int error = checkText(viewOf(text), kLongestHueText); error != 0) return answer(operation, error);
  return orNoMemory([&] { return start(kit, {operation, seconds, mac, std::string(viewOf(text))}); });
}

bool areValid(const tembra_options& options) { return options.role >= 0 && options.role <= ROLE_FREE_USER_2; }

template <typename Structure>
const Structure* detailOf(const tembra_event* event) {
  return event == nullptr ? nullptr : std::get_if<Structure>(&event->detail);
}

}  // namespace

struct tembra_frontend {
  explicit tembra_frontend(const tembra_options& options) : worker(options) {}
  Worker worker;
  std::mutex commands;  // a choice is for the operation that runs, not for the next one
};

namespace {

int start(tembra_frontend* kit, Command command) {
  const std::lock_guard lock(kit->commands);
  const char* const call = callName(command);
  return answer(call, kit->worker.inbox().start(std::move(command)) ? 0 : EBUSY);
}

int finish(tembra_frontend* kit, int type, const char* name, const char* place) {
  Outbox& outbox = kit->worker.outbox();
  const tembra_found found = outbox.state().found;
  if (found.size == 0) return ESRCH;
  if (type == DEVTYPE_UNKNOWN) type = found.type;
  const int* end = found.choices + found.choice_count;
  if (std::find(found.choices + 0, end, type) == end) return EINVAL;
  // The proposed name is the library's own, and good whatever it is.
  if (const int error = viewOf(name) == found.name ? 0 : checkText(viewOf(name), found.name_room); error != 0)
    return error;
  if (const int error = checkText(viewOf(place), found.place_room); error != 0) return error;
  return orNoMemory([&] {
    Choice choice{type, std::string(viewOf(name)), std::string(viewOf(place))};
    const std::lock_guard lock(kit->commands);
    if (!outbox.takeOffer(choice.name)) return ESRCH;
    kit->worker.inbox().choose(std::move(choice));
    return 0;
  });
}

tembra_frontend* make(const tembra_options& options) {
  try {
    return std::make_unique<tembra_frontend>(options).release();
  } catch (const std::bad_alloc&) {
    errno = ENOMEM;
  } catch (const NoDescriptor& shortage) {
    errno = shortage.error;
  } catch (const std::system_error& error) {
    errno = error.code().value();
  }
  return nullptr;
}

}  // namespace

tembra_frontend* tembra_frontend_new(const tembra_options* options) {
  auto known = sized<tembra_options>();
  if (options == nullptr) options = &known;
  if (!takeIn(known, *options) || !areValid(known)) {
    errno = EINVAL;
    return nullptr;
  }
  if (exists.exchange(true)) {
    errno = EBUSY;
    return nullptr;
  }
  tembra_frontend* kit = make(known);
  if (kit == nullptr) exists = false;
  return kit;
}

void tembra_frontend_free(tembra_frontend* kit) {
  if (kit == nullptr) return;
  delete kit;
  exists = false;
}

int tembra_frontend_add(tembra_frontend* kit) { return start(kit, {TEMBRA_OPERATION_ADD, 0, {}, {}}); }

int tembra_frontend_add_again(tembra_frontend* kit) { return start(kit, {TEMBRA_OPERATION_ADD, 1, {}, {}}); }

int tembra_frontend_remove(tembra_frontend* kit) { return start(kit, {TEMBRA_OPERATION_REMOVE, 0, {}, {}}); }

int tembra_frontend_take_out(tembra_frontend* kit) { return start(kit, {TEMBRA_OPERATION_REMOVE, 1, {}, {}}); }

int tembra_frontend_reset(tembra_frontend* kit, int what) {
  if (what < reset_zigbee || what > reset_both_and_remove_all) return answer(TEMBRA_OPERATION_RESET, EINVAL);
  return start(kit, {TEMBRA_OPERATION_RESET, what, {}, {}});
}

int tembra_frontend_hue_discover(tembra_frontend* kit) {
  return start(kit, {TEMBRA_OPERATION_HUE_DISCOVER, 0, {}, {}});
}

int tembra_frontend_hue_add_bridge(tembra_frontend* kit, const char* mac, int seconds) {
  if (seconds < 1 || seconds > kLongestForLinkButton) return answer(TEMBRA_OPERATION_HUE_ADD_BRIDGE, EINVAL);
  return startForBridge(kit, TEMBRA_OPERATION_HUE_ADD_BRIDGE, mac, nullptr, seconds);
}

int tembra_frontend_hue_add_bulb(tembra_frontend* kit, const char* mac, const char* bulb) {
  if (viewOf(bulb).empty()) return answer(TEMBRA_OPERATION_HUE_ADD_BULB, EINVAL);
  return startForBridge(kit, TEMBRA_OPERATION_HUE_ADD_BULB, mac, bulb);
}

int tembra_frontend_hue_refresh(tembra_frontend* kit, const char* mac, const char* text) {
  return startForBridge(kit, TEMBRA_OPERATION_HUE_REFRESH, mac, text);
}

int tembra_frontend_hue_remove(tembra_frontend* kit, const char* mac) {
  return startForBridge(kit, TEMBRA_OPERATION_HUE_REMOVE, mac, nullptr);
}

int tembra_frontend_hue_list(tembra_frontend* kit) { return start(kit, {TEMBRA_OPERATION_HUE_LIST, 0, {}, {}}); }

int tembra_frontend_nest_status(tembra_frontend* kit) { return start(kit, {TEMBRA_OPERATION_NEST_STATUS, 0, {}, {}}); }

int tembra_frontend_nest_link(tembra_frontend* kit, const char* code) {
  const int error = viewOf(code).empty() ? EINVAL : checkText(code, kLongestCode);
  if (error != 0) return answer(TEMBRA_OPERATION_NEST_LINK, error);
  return orNoMemory([&] { return start(kit, {TEMBRA_OPERATION_NEST_LINK, 0, code, {}}); });
}

int tembra_frontend_nest_unlink(tembra_frontend* kit) { return start(kit, {TEMBRA_OPERATION_NEST_UNLINK, 0, {}, {}}); }

int tembra_frontend_devices(tembra_frontend* kit) { return start(kit, {TEMBRA_OPERATION_DEVICES, 0, {}, {}}); }

int tembra_frontend_finish(tembra_frontend* kit, int type, const char* name, const char* place) {
  return answer("finish", finish(kit, type, name, place));
}

int tembra_frontend_cancel(tembra_frontend* kit) { return answer("cancel", kit->worker.inbox().cancel() ? 0 : ESRCH); }

int tembra_frontend_descriptor(const tembra_frontend* kit) { return kit->worker.outbox().descriptor(); }

tembra_event* tembra_frontend_next(tembra_frontend* kit, int milliseconds) {
  auto event = kit->worker.outbox().next(milliseconds);
  if (!event) errno = ETIMEDOUT;
  return event.release();
}

void tembra_event_free(tembra_event* event) { delete event; }

const tembra_head* tembra_event_head(const tembra_event* event) { return event == nullptr ? nullptr : &event->head; }
const tembra_found* tembra_event_found(const tembra_event* event) { return detailOf<tembra_found>(event); }
const tembra_device_event* tembra_event_device(const tembra_event* event) {
  return detailOf<tembra_device_event>(event);
}
const tembra_bridges* tembra_event_bridges(const tembra_event* event) { return detailOf<BridgeList>(event); }
const tembra_bridge* tembra_event_bridge(const tembra_event* event, int index) {
  const auto* const list = detailOf<BridgeList>(event);
  return list != nullptr && index >= 0 && index < list->count ? &list->bridges[static_cast<std::size_t>(index)]
                                                              : nullptr;
}
const tembra_link_button* tembra_event_link_button(const tembra_event* event) {
  return detailOf<tembra_link_button>(event);
}
const tembra_account* tembra_event_account(const tembra_event* event) { return detailOf<tembra_account>(event); }
const tembra_step* tembra_event_step(const tembra_event* event) { return detailOf<tembra_step>(event); }
const tembra_warning* tembra_event_warning(const tembra_event* event) { return detailOf<tembra_warning>(event); }
const tembra_ended* tembra_event_ended(const tembra_event* event) { return detailOf<tembra_ended>(event); }
const tembra_device* tembra_event_listed(const tembra_event* event, int index) {
  const auto* devices = detailOf<std::vector<tembra_device>>(event);
  const bool isListed = devices != nullptr && index >= 0 && static_cast<std::size_t>(index) < devices->size();
  return isListed ? &(*devices)[static_cast<std::size_t>(index)] : nullptr;
}
const char* tembra_event_json(const tembra_event* event) { return event == nullptr ? nullptr : event->json.c_str(); }

int tembra_frontend_state(tembra_frontend* kit, tembra_state* state) {
  return handOut(state, kit->worker.outbox().state()) ? 0 : EINVAL;
}

size_t tembra_frontend_state_json(tembra_frontend* kit, char* text, size_t size) {
  const std::string json = stateJson(kit->worker.outbox().state());
  if (size > 0) {
    const std::size_t length = std::min(json.size(), size - 1);
    std::memcpy(text, json.data(), length);
    text[length] = '\0';
  }
  return json.size();
}

size_t tembra_frontend_history(char* text, size_t size) { return history().write(text, size); }

void tembra_frontend_log(int level, const char* text) { history().line(level, viewOf(text)); }

int tembra_frontend_version() { return TEMBRA_VERSION; }

const char* tembra_type_name(int type) {
  static thread_local std::string name;
  name = typeName(type);
  return name.empty() ? nullptr : name.c_str();
}

int tembra_type_number(const char* name) { return name == nullptr ? 0 : StrToDevType(name); }
