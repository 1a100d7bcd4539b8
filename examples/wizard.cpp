// A wizard for terminals: adds devices and links Hue bridges. "c" or Ctrl-C cancels at any time.
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>
#include <tembra/frontend.hpp>

#include <csignal>
#include <cstdlib>
#include <iostream>
#include <map>
#include <sstream>

static volatile std::sig_atomic_t interrupted = 0;
static const std::map<tembra::Phase, std::string> kAwaited = {
    {TEMBRA_PHASE_BUTTON, "Press the button of the device."},
    {TEMBRA_PHASE_IDENTITY, "A device answers."},
    {TEMBRA_PHASE_DESCRIPTION, "The device describes itself."},
    {TEMBRA_PHASE_ANSWER, "The Hue server is asked."},
    {TEMBRA_PHASE_LINK_BUTTON, "Press the button of the bridge."}};

static std::size_t columns() {
  winsize size{};
  return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

// Over the countdown, and broken at blanks where the terminal ends.
static void say(const std::string& text) {
  std::istringstream words(text);
  std::string lines, line;
  for (std::string word; words >> word; line += (line.empty() ? "" : " ") + word) {
    if (line.size() + 1 + word.size() > columns()) lines += std::exchange(line, "") + "\n";
  }
  std::cout << "\r\x1b[K" << lines << line << std::endl;
}

static bool isGood(tembra::Result result) {
  if (result != tembra::Result::ok) say(tembra::sentence(result));
  return result == tembra::Result::ok;
}

class Wizard {
 public:
  void run() {
    constexpr const char* kMenu = "Enter: add a device, h: Hue bridges, q: quit";
    for (auto line = ask(kMenu); line.value_or("q") != "q"; line = ask(kMenu)) *line == "h" ? linkBridge() : add();
  }

 private:
  void add() {
    found_.reset();
    runs_ = isGood(kit_.add());
    for (bool taken = false; runs_; wait()) {
      if (found_ && !taken) taken = finish();
      showCountdown();
    }
  }

  bool finish() {
    std::vector<std::string> types;
    for (const int type : found_->choices) types.push_back(tembra::typeName(type));
    const std::size_t chosen = types.size() > 1 ? askOneOf(types, "What is it? Enter: " + types[0]).value_or(0) : 0;
    const auto name = runs_ ? ask("Name? Enter: " + found_->name) : std::nullopt;
    const auto place = name ? ask("Place? Enter: " + found_->place) : std::nullopt;
    return !place || isGood(kit_.finish(found_->choices[chosen], *name, *place));
  }

  void linkBridge() {
    for (runs_ = isGood(kit_.hueDiscover()); runs_; wait()) showCountdown();
    const auto chosen = askOneOf(bridges_, "Link which bridge? Enter: none");
    for (runs_ = chosen && isGood(kit_.hueAddBridge(bridges_[*chosen])); runs_; wait()) showCountdown();
  }

  // The user's next line; nothing when the operation ends before it comes, or when the user has gone.
  std::optional<std::string> ask(const std::string& question) {
    if (isThere_) say(question), std::cout << "> " << std::flush;
    for (const bool duringOperation = runs_; isThere_ && runs_ == duringOperation;) {
      if (auto line = wait()) return line;
    }
    return std::nullopt;
  }

  // A place in the list; nothing for an empty line.
  std::optional<std::size_t> askOneOf(const std::vector<std::string>& list, const std::string& question) {
    for (std::size_t i = 0; i < list.size(); ++i) say(std::to_string(i + 1) + " " + list[i]);
    while (const auto line = list.empty() ? std::nullopt : ask(question)) {
      const std::size_t number = std::strtoul(line->c_str(), nullptr, 10);
      if (line->empty()) break;
      if (number >= 1 && number <= list.size()) return number - 1;
    }
    return std::nullopt;
  }

  // Until something happens, at most a second. @return a line of the user
  std::optional<std::string> wait() {
    pollfd sources[] = {{isThere_ ? STDIN_FILENO : -1, POLLIN, 0}, {kit_.descriptor(), POLLIN, 0}};
    const bool isQuiet = poll(sources, 2, 1000) <= 0;
    if (isQuiet && std::exchange(interrupted, 0) != 0) cancel();
    while (const auto event = kit_.next(std::chrono::milliseconds(0))) hear(*event);
    if (isQuiet || sources[0].revents == 0) return std::nullopt;
    std::string line;
    isThere_ = static_cast<bool>(std::getline(std::cin, line));
    if (!isThere_ || line == "c") return cancel(), std::nullopt;
    return line;
  }

  void cancel() { isThere_ = kit_.cancel() == tembra::Result::ok && isThere_; }

  void hear(const tembra::Event& event) {
    if (const auto* found = event.as<tembra::Found>()) found_ = *found;
    if (const auto* warning = event.as<tembra::Warning>()) say(warning->text);
    if (const auto* list = event.as<tembra::Bridges>()) {
      bridges_.clear();
      for (const tembra::Bridge& bridge : list->bridges) bridges_.push_back(bridge.mac);
    }
    if (const auto* device = event.as<tembra::Added>())
      say("Added " + device->name + ", id " + std::to_string(device->id));
    const auto* ended = event.as<tembra::Ended>();
    if (ended != nullptr) say(ended->text + (ended->advice.empty() ? "" : " ") + ended->advice);
    runs_ = ended == nullptr;
  }

  // The seconds come first, so that a narrow terminal shows them, too.
  void showCountdown() {
    const auto now = kit_.state();
    std::string line = now && kAwaited.count(now->phase) != 0 ? kAwaited.at(now->phase) : "";
    if (!line.empty() && now->endsIn) line = std::to_string(now->endsIn->count() / 1000) + " s  " + line;
    std::cout << "\r\x1b[K" << line.substr(0, columns() - 1) << std::flush;
  }

  tembra::Frontend kit_;
  bool runs_ = false, isThere_ = true;  // the operation, the user
  std::optional<tembra::Found> found_;
  std::vector<std::string> bridges_;
};

int main() {
  std::setvbuf(stdin, nullptr, _IONBF, 0);  // so that poll knows of every line
  std::signal(SIGINT, [](int) { interrupted = 1; });
  Wizard().run();
}
