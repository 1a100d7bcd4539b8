#include "sim/scenario/scenario.h"

#include <algorithm>
#include <utility>

namespace tembra::sim {

using std::chrono::milliseconds;

Scenario::Scenario(Surroundings surroundings, const Commands& commands, std::vector<ScenarioStep> steps)
    : surroundings_(surroundings), commands_(commands), steps_(std::move(steps)) {}

Scenario::~Scenario() { surroundings_.happenings.listen(nullptr); }

void Scenario::start() {
  start_ = surroundings_.loop.now();
  surroundings_.happenings.listen([this](Happening what) { happened(what); });
  awaitStep();
}

void Scenario::awaitStep() {
  scheduled_ = false;
  if (next_ < steps_.size() && !steps_[next_].on) schedule(steps_[next_]);
}

void Scenario::schedule(const ScenarioStep& step) {
  const milliseconds delay =
      step.at ? std::max(*step.at - (surroundings_.loop.now() - start_), milliseconds(0)) : step.after;
  scheduled_ = true;
  timer_ = surroundings_.loop.after(delay, [this] { runStep(); });
}

void Scenario::happened(Happening what) {
  if (scheduled_ || next_ >= steps_.size() || steps_[next_].on != what) return;
  schedule(steps_[next_]);
}

void Scenario::runStep() {
  const std::string& request = steps_[next_++].request;
  surroundings_.journal.said("scenario", "router", request);
  const Outcome outcome = commands_.run(request);
  if (!outcome.done) surroundings_.journal.trouble("the scenario's \"" + request + "\" failed: " + outcome.text);
  awaitStep();
}

}  // namespace tembra::sim
