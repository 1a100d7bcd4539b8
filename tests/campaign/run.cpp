#include "campaign/run.h"

#include <pthread.h>
#include <tembra/service.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>

#include "campaign/account.h"
#include "campaign/home.h"
#include "campaign/kit_front_end.h"
#include "campaign/record.h"
#include "campaign/spoofers.h"
#include "campaign/story.h"
#include "campaign/verdict.h"

namespace campaign {
namespace {

constexpr Time kBoot = 1000 * kSecond;
constexpr Time kAfterwards = kSecond;

// The front end hears of its interruption through a descriptor; no thread dies of it.
void blockInterruptions() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGHUP, SIGINT, SIGTERM}) sigaddset(&signals, signal);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

void prepareProcess() {
  blockInterruptions();
  const std::string path = std::string(std::getenv("PATH")) + ":" + TEMBRA_PROGRAM_FOLDER;
  setenv("PATH", path.c_str(), 1);
  setenv("TEMBRA_LOG", "off", 1);
  unsetenv("TEMBRA_TIMELINE");
  setenv("TEMBRA_TIMELINE_START", std::to_string(kBoot / kSecond).c_str(), 1);
  for (const char* file : {kDatabasePath, kAuthorisationPath}) std::filesystem::remove(file);
}

bool linked() { return std::filesystem::exists(kAuthorisationPath); }

class Player {
 public:
  Player(WorldClock& clock, Home& home, KitFrontEnd& kit) : clock_(clock), home_(home), kit_(kit) {}

  Record play(const Step& step) {
    clock_.sleepUntil(clock_.now() + step.pause);
    Record record;
    record.step = step;
    auto action = step.actions.begin();
    for (; action != step.actions.end() && action->after == 0; ++action) ask(record, action->request);
    record.before = readDatabase();
    perform(record, {action, step.actions.end()});
    clock_.sleepUntil(clock_.now() + kAfterwards);
    record.after = readDatabase();
    record.linkedAfter = linked();
    record.wire = wire().since(firstDatagram_);
    return record;
  }

 private:
  void ask(Record& record, const std::string& request) {
    const auto outcome = home_.ask(request);
    record.asked.push_back({clock_.now(), request, outcome.done, outcome.text});
  }

  // The actions in their time, until the front end ends.
  void perform(Record& record, const std::vector<Action>& actions) {
    firstDatagram_ = wire().count();
    record.began = clock_.now();
    const FrontEnd frontEnd(record.step, kit_);
    std::optional<Time> interrupt;
    if (record.step.interrupt) interrupt = record.began + *record.step.interrupt;
    for (const Action& action : actions) {
      const Time moment = record.began + action.after;
      if (interrupt && *interrupt < moment) interruptAt(record, frontEnd, interrupt);
      if (!frontEnd.awaitEnd(moment)) ask(record, action.request);
    }
    if (interrupt) interruptAt(record, frontEnd, interrupt);
    frontEnd.awaitEnd();
    forgetInterruption();
    record.ended = frontEnd.ended();
    record.status = frontEnd.status();
    record.seen = frontEnd.seen();
  }

  // One that the front end did not look for any more would have ended with its process.
  static void forgetInterruption() {
    sigset_t hangUp;
    sigemptyset(&hangUp);
    sigaddset(&hangUp, SIGHUP);
    constexpr timespec atOnce{};
    sigtimedwait(&hangUp, nullptr, &atOnce);
  }

  static void interruptAt(Record& record, const FrontEnd& frontEnd, std::optional<Time>& moment) {
    if (!frontEnd.awaitEnd(moment)) {
      record.interrupted = moment;
      FrontEnd::interrupt();
    }
    moment.reset();
  }

  WorldClock& clock_;
  Home& home_;
  KitFrontEnd& kit_;
  std::size_t firstDatagram_ = 0;
};

void note(const Record& record, const Plan& plan, std::vector<std::string>& reached) {
  for (const SeenEvent& event : record.seen) reached.push_back("event " + std::to_string(event.code));
  if (!record.step.isTried) return;
  const std::string status = std::string(": status ") + std::to_string(record.status);
  reached.push_back(plan.flow->name + status);
  reached.push_back(plan.scenario->name + status);
}

// All that a step came to, but for the moment when the front end ends. Before that the kit looks for up to 20 ms
// whether the library has come to rest, and which of two threads goes first in one moment is open.
std::string fingerprint(Record record) {
  record.ended = record.began;
  std::string text = story(record);
  for (const auto& [key, value] : record.after.records) text.append("\n").append(key).append(" ").append(value);
  return text + (record.linkedAfter ? "\nlinked" : "\nnot linked");
}

// The router's own view: it polices the library.
void checkRouter(Home& home, std::vector<std::string>& disagreements) {
  const std::string status = home.ask("status").text;
  for (const char* line : {"faults found: 0\n", "troubles: 0"}) {
    if (status.find(line) == std::string::npos) disagreements.push_back("the simulated router complains:\n" + status);
  }
  home.stop();
}

}  // namespace

Outcome play(const Plan& plan) {
  prepareProcess();
  tembra_set_strict(plan.spoofing && plan.spoofing->isStrict ? 1 : 0);
  WorldClock& clock = *new WorldClock(kBoot);  // never destroyed: a thread that ends leaves through it
  enterWorld(&clock);
  Outcome outcome;
  std::vector<std::string>& disagreements = outcome.disagreements;
  Account& account = *new Account;  // for threads on their way out, as the clock
  if (!plan.spoofing) keepAccount(&account);
  {
    Home home(plan.latencyMs);
    std::optional<KitFrontEnd> kit(plan);
    Player player(clock, home, *kit);
    std::optional<Spoofers> spoofers;
    if (plan.spoofing && plan.spoofing->hasSpoofers) spoofers.emplace(plan.seed);
    for (const Step& step : plan.steps) {
      const Record record = player.play(step);
      if (plan.spoofing) {
        outcome.reached.push_back(fingerprint(record));
        continue;
      }
      for (const std::string& found : disagreementsIn(record, kit->story())) disagreements.push_back(found);
      if (!disagreements.empty()) disagreements.push_back(story(record));
      note(record, plan, outcome.reached);
      outcome.reached.push_back(kit->ending());
    }
    spoofers.reset();
    kit.reset();
    checkRouter(home, disagreements);
  }
  // The library's receive thread of the last connection may still be on its way out.
  clock.sleepUntil(clock.now() + kAfterwards);
  keepAccount(nullptr);
  for (const std::string& difference : account.differences()) disagreements.push_back(difference);
  enterWorld(nullptr);
  return outcome;
}

}  // namespace campaign
