// A front end that does what its arguments say, one operation after the other, and prints each event, and the state
// behind it, as one line of JSON each:
//
//     operations-driver add,type=43,name=Lamp remove,cancel=waiting hue-add-bridge,mac=02:a1:b2:0c:00:01
//
// Settings of an operation: type, name, place (an add is finished with them), slow (it is not finished), cancel=KIND
// (of the event after which it is cancelled), cancel=FILE (an add is finished, and cancelled when a server writes that
// file), mac, text, what (is reset). The variable ROLE is the front end's role.
#include <tembra/frontend.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <map>
#include <sstream>
#include <string>
#include <thread>

namespace {

class Task {
 public:
  explicit Task(const std::string& text) {
    std::istringstream words(text);
    std::getline(words, operation_, ',');
    for (std::string word; std::getline(words, word, ',');) {
      const auto equals = word.find('=');
      settings_[word.substr(0, equals)] = equals == std::string::npos ? "" : word.substr(equals + 1);
    }
  }

  [[nodiscard]] const std::string& operation() const { return operation_; }
  [[nodiscard]] bool has(const std::string& name) const { return settings_.contains(name); }
  [[nodiscard]] const char* text(const std::string& name) const {
    return has(name) ? settings_.at(name).c_str() : nullptr;
  }
  [[nodiscard]] int number(const std::string& name) const { return has(name) ? std::atoi(text(name)) : 0; }

 private:
  std::string operation_;
  std::map<std::string, std::string> settings_;
};

struct Starter {
  const char* operation;
  int (*start)(tembra_frontend* kit, const Task& task);
};

constexpr Starter kStarters[] = {
    {"add", [](tembra_frontend* kit, const Task&) { return tembra_frontend_add(kit); }},
    {"add-again", [](tembra_frontend* kit, const Task&) { return tembra_frontend_add_again(kit); }},
    {"take-out", [](tembra_frontend* kit, const Task&) { return tembra_frontend_take_out(kit); }},
    {"remove", [](tembra_frontend* kit, const Task&) { return tembra_frontend_remove(kit); }},
    {"reset", [](tembra_frontend* kit, const Task& task) { return tembra_frontend_reset(kit, task.number("what")); }},
    {"hue-discover", [](tembra_frontend* kit, const Task&) { return tembra_frontend_hue_discover(kit); }},
    {"hue-add-bridge",
     [](tembra_frontend* kit, const Task& task) { return tembra_frontend_hue_add_bridge(kit, task.text("mac"), 60); }},
    {"hue-add-bulb",
     [](tembra_frontend* kit, const Task& task) {
       return tembra_frontend_hue_add_bulb(kit, task.text("mac"), task.text("text"));
     }},
    {"hue-refresh",
     [](tembra_frontend* kit, const Task& task) {
       return tembra_frontend_hue_refresh(kit, task.text("mac"), task.text("text"));
     }},
    {"hue-remove",
     [](tembra_frontend* kit, const Task& task) { return tembra_frontend_hue_remove(kit, task.text("mac")); }},
    {"hue-list", [](tembra_frontend* kit, const Task&) { return tembra_frontend_hue_list(kit); }},
    {"nest-status", [](tembra_frontend* kit, const Task&) { return tembra_frontend_nest_status(kit); }},
    {"nest-link",
     [](tembra_frontend* kit, const Task& task) { return tembra_frontend_nest_link(kit, task.text("text")); }},
    {"nest-unlink", [](tembra_frontend* kit, const Task&) { return tembra_frontend_nest_unlink(kit); }},
    {"devices", [](tembra_frontend* kit, const Task&) { return tembra_frontend_devices(kit); }},
};

int start(tembra_frontend* kit, const Task& task) {
  for (const Starter& starter : kStarters) {
    if (task.operation() == starter.operation) return starter.start(kit, task);
  }
  return ENOSYS;
}

void printRefusal(int error) { std::cout << R"({"refused":")" << strerrorname_np(error) << "\"}" << std::endl; }

void printState(tembra_frontend* kit) {
  std::string text;
  std::size_t length = tembra_frontend_state_json(kit, nullptr, 0);
  while (length > text.size()) {  // the state may grow between the two calls
    text.resize(length);
    length = tembra_frontend_state_json(kit, text.data(), text.size() + 1);
  }
  text.resize(length);
  std::cout << R"({"state":)" << text << "}" << std::endl;
}

void finish(tembra_frontend* kit, const Task& task) {
  const int error = tembra_frontend_finish(kit, task.number("type"), task.text("name"), task.text("place"));
  if (error == 0) return printState(kit);
  printRefusal(error);
  tembra_frontend_finish(kit, 0, nullptr, nullptr);
}

// Until the server has written the file.
void finishAndCancel(tembra_frontend* kit, const Task& task, const std::filesystem::path& file) {
  const auto before = std::filesystem::last_write_time(file);
  finish(kit, task);
  while (std::filesystem::last_write_time(file) == before) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  tembra_frontend_cancel(kit);
}

// Whether the event was the operation's end.
bool handle(tembra_frontend* kit, const Task& task, const tembra_event* event) {
  std::cout << tembra_event_json(event) << std::endl;
  printState(kit);
  const bool cancels = task.has("cancel");
  if (cancels && std::strcmp(task.text("cancel"), tembra_event_kind_name(tembra_event_head(event)->kind)) == 0) {
    tembra_frontend_cancel(kit);
  }
  if (tembra_event_found(event) != nullptr && !task.has("slow")) {
    if (!cancels) finish(kit, task);
    if (cancels && *task.text("cancel") == '/') finishAndCancel(kit, task, task.text("cancel"));
  }
  return tembra_event_ended(event) != nullptr;
}

void perform(tembra_frontend* kit, const Task& task) {
  if (const int error = start(kit, task); error != 0) return printRefusal(error);
  for (bool over = false; !over;) {
    tembra_event* event = tembra_frontend_next(kit, -1);
    over = handle(kit, task, event);
    tembra_event_free(event);
  }
}

}  // namespace

int main(int argc, char** argv) {
  const char* role = std::getenv("ROLE");
  const tembra_options options = {sizeof options, role == nullptr ? 0 : std::atoi(role), 0, nullptr, nullptr};
  tembra_frontend* kit = tembra_frontend_new(&options);
  if (kit == nullptr) return 1;
  for (int i = 1; i < argc; ++i) perform(kit, Task(argv[i]));
  tembra_frontend_free(kit);
  return 0;
}
