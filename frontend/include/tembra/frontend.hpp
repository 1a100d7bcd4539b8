// The front-end kit for C++17: <tembra/frontend.h> as values. Nothing is to be freed, nothing calls back.
//
//     tembra::Frontend kit;
//     if (kit.add() != tembra::Result::ok) return 1;
//     while (const auto event = kit.next()) {
//       if (const auto* found = event->as<tembra::Found>()) {
//         if (kit.finish(found->type, "Hall lamp") != tembra::Result::ok) kit.cancel();
//       }
//       if (const auto* ended = event->as<tembra::Ended>()) {
//         std::puts(ended->text.c_str());
//         break;
//       }
//     }
//
// What operations, phases and reasons mean, and which thread may call what, says <tembra/frontend.h>. Its enumerations
// are the ones here. No function throws, but for std::bad_alloc where a value is made.
#ifndef TEMBRA_FRONTEND_HPP
#define TEMBRA_FRONTEND_HPP

#include <tembra/frontend_event.hpp>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <memory>
#include <utility>

namespace tembra {
inline namespace frontend_1 {

/// What a call says at once. The numbers are errno's, as in the C face.
enum class Result {
  ok = 0,
  busy = EBUSY,         ///< an operation runs, or the last one's call of the library is not over yet
  nothingRuns = ESRCH,  ///< nothing to cancel; no device to finish
  invalid = EINVAL,     ///< an argument that is no such thing: a type that is no choice, a text that is no MAC address
  tooLong = EMSGSIZE,   ///< a text without room
  badText = EILSEQ,     ///< a text with control characters, or that is no UTF-8
  noKit = EBADF         ///< the object holds no kit: making it failed, or it was moved from
};

struct Options {
  Role role = TEMBRA_ROLE_TOUCH_SCREEN;
  bool keepOpen = false;  ///< the connection stays open between operations, so that no other front end gets in
  std::string program;    ///< how it is called for other front ends; empty: the process's own name
  std::string watchPath;  ///< where other front ends may watch and cancel; empty: nowhere
};

// ---- The kit ----

/// The kit. A process has one at a time. Any thread may call any function at any time, but for moving and destroying.
class Frontend {
 public:
  /// Opens and sends nothing. When it fails, the object is false and errno says why (EBUSY: the process has one).
  explicit Frontend(const Options& options = {}) {
    tembra_options c{};
    c.size = sizeof c;
    c.role = options.role;
    c.keep_open = options.keepOpen ? 1 : 0;
    c.program = options.program.empty() ? nullptr : options.program.c_str();
    c.watch_path = options.watchPath.empty() ? nullptr : options.watchPath.c_str();
    kit_.reset(tembra_frontend_new(&c));
  }
  explicit operator bool() const { return kit_ != nullptr; }

  // Each starts an operation, which ends with exactly one event Ended.
  [[nodiscard]] Result add() { return call(tembra_frontend_add); }
  [[nodiscard]] Result addAgain() { return call(tembra_frontend_add_again); }  ///< also a device that is known already
  [[nodiscard]] Result remove() { return call(tembra_frontend_remove); }
  [[nodiscard]] Result takeOut() { return call(tembra_frontend_take_out); }  ///< a device that joined but was not kept
  [[nodiscard]] Result reset(Reset what) { return call(tembra_frontend_reset, static_cast<int>(what)); }
  [[nodiscard]] Result hueDiscover() { return call(tembra_frontend_hue_discover); }
  /// @param forButton how long somebody has to press the bridge's button, 1 to 600 seconds
  [[nodiscard]] Result hueAddBridge(const std::string& mac, std::chrono::seconds forButton = std::chrono::seconds(60)) {
    const auto seconds = forButton.count();
    return call(tembra_frontend_hue_add_bridge, mac, seconds < 1 || seconds > 600 ? 0 : static_cast<int>(seconds));
  }
  [[nodiscard]] Result hueAddBulb(const std::string& mac, const std::string& bulb) {
    return call(tembra_frontend_hue_add_bulb, mac, bulb);
  }
  [[nodiscard]] Result hueRefresh(const std::string& mac, const std::string& text = {}) {
    return call(tembra_frontend_hue_refresh, mac, text);
  }
  [[nodiscard]] Result hueRemove(const std::string& mac) { return call(tembra_frontend_hue_remove, mac); }
  [[nodiscard]] Result hueList() { return call(tembra_frontend_hue_list); }
  [[nodiscard]] Result nestStatus() { return call(tembra_frontend_nest_status); }
  [[nodiscard]] Result nestLink(const std::string& code) { return call(tembra_frontend_nest_link, code); }
  [[nodiscard]] Result nestUnlink() { return call(tembra_frontend_nest_unlink); }
  [[nodiscard]] Result devices() { return call(tembra_frontend_devices); }  ///< lists the database: Devices, Ended

  /// After Found: hands the device over. @param type one of Found::choices, 0: the proposed one. A GenericDevice stays
  /// one, and the choice says what its values are. An empty name or place is the proposed one.
  [[nodiscard]] Result finish(int type = 0, const std::string& name = {}, const std::string& place = {}) {
    return call(tembra_frontend_finish, type, name, place);
  }
  /// Cancels what runs: Ended comes within 100 ms. A call of the library may go on behind it, and no event tells its
  /// end: where a start then says busy, try again every 100 ms or so.
  Result cancel() { return call(tembra_frontend_cancel); }

  /// Readable while there are events. -1: no kit.
  [[nodiscard]] int descriptor() const { return kit_ ? tembra_frontend_descriptor(kit_.get()) : -1; }

  /// The next event, or nothing when none came in time. @param atMost 0 only looks; negative: without limit
  std::optional<Event> next(std::chrono::milliseconds atMost = std::chrono::milliseconds(-1)) {
    if (!kit_) return errno = EBADF, std::nullopt;
    const auto wait = std::clamp<std::chrono::milliseconds::rep>(atMost.count(), -1, INT_MAX);
    const std::unique_ptr<tembra_event, Release> event(tembra_frontend_next(kit_.get(), static_cast<int>(wait)));
    if (!event) return std::nullopt;
    return from_c::event(event.get());
  }

  /// Nothing: no kit.
  [[nodiscard]] std::optional<State> state() const {
    tembra_state c{};
    c.size = sizeof c;
    if (!kit_ || tembra_frontend_state(kit_.get(), &c) != 0) return std::nullopt;
    State now{static_cast<Operation>(c.operation),
              static_cast<Phase>(c.phase),
              static_cast<Radio>(c.radio),
              c.last_event,
              std::chrono::milliseconds(c.milliseconds),
              from_c::limit(c.ends_in),
              c.device_id,
              c.device_name,
              std::nullopt};
    if (c.phase == TEMBRA_PHASE_CHOICE) now.found = from_c::found(c.found);
    return now;
  }

  /// The state as one JSON object; empty: no kit.
  [[nodiscard]] std::string stateJson() const {
    std::string text;
    if (!kit_) return text;
    for (std::size_t length = 0;;) {  // the state may change meanwhile
      text.resize(length);
      length = tembra_frontend_state_json(kit_.get(), text.data(), text.size() + 1);
      if (length > text.size()) continue;
      text.resize(length);
      return text;
    }
  }

 private:
  struct Release {
    void operator()(tembra_frontend* kit) const { tembra_frontend_free(kit); }
    void operator()(tembra_event* event) const { tembra_event_free(event); }
  };

  // A text of C ends at its first NUL: a longer one would be cut without a word.
  static bool isWhole(int /*number*/) { return true; }
  static bool isWhole(const std::string& text) { return text.find('\0') == std::string::npos; }
  static int toC(int number) { return number; }
  static const char* toC(const std::string& text) { return text.c_str(); }

  template <typename Function, typename... Arguments>
  Result call(Function* function, const Arguments&... arguments) {
    if (!kit_) return Result::noKit;
    if (!(isWhole(arguments) && ...)) return Result::badText;
    return static_cast<Result>(function(kit_.get(), toC(arguments)...));
  }

  std::unique_ptr<tembra_frontend, Release> kit_;
};

/// The devices of the database. Nothing when it cannot be read; then errno says why (EBADMSG: it is damaged). Needs no
/// kit, but blocks, without limit, while another process writes the database: an event loop uses Frontend::devices.
inline std::optional<std::vector<Device>> devices() {
  std::vector<tembra_device> rows;
  for (bool all = false; !all;) {  // there may be more of them meanwhile
    const long count = tembra_read_devices(rows.data(), sizeof(tembra_device), rows.size());
    if (count < 0) return std::nullopt;
    all = static_cast<std::size_t>(count) <= rows.size();
    rows.resize(static_cast<std::size_t>(count));
  }
  std::vector<Device> list;
  list.reserve(rows.size());
  for (const tembra_device& row : rows) list.push_back(from_c::device(row));
  return list;
}

// ---- The flight recorder ----

/// What the process's kit did last: one JSON object a line, the oldest first, also after an operation failed. Needs no
/// kit. <tembra/history.h> describes the lines.
inline std::string history() {
  std::string text(TEMBRA_HISTORY_SIZE, '\0');
  text.resize(tembra_frontend_history(text.data(), text.size()));
  return text;
}

/// Adds a line of the log to it. @param level as Logger::Log has it: 0 progress, 1 warning, 2 error, 3 detail
inline void log(int level, const std::string& text) { tembra_frontend_log(level, text.c_str()); }

/// Whether somebody listens where the library sends a server's commands; also where the kernel does not tell.
inline bool serverListens(Server server) { return tembra_server_listens(server) != 0; }

/// "BinarySwitch" for 1; empty when there is no such type.
inline std::string typeName(int type) {
  const char* name = tembra_type_name(type);
  return name == nullptr ? std::string() : std::string(name);
}

/// A sentence for a user; empty for Result::ok.
inline const char* sentence(Result result) { return tembra_refusal_text(static_cast<int>(result)); }

}  // namespace frontend_1
}  // namespace tembra

#endif
