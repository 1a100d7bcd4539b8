#include "sim/router.h"

#include <sys/signalfd.h>

#include <algorithm>
#include <csignal>
#include <iostream>
#include <stdexcept>

namespace tembra::sim {
namespace {

// A reader of the timeline that leaves is no reason to stop.
Descriptor stopSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  std::signal(SIGPIPE, SIG_IGN);
  return Descriptor(signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
}

std::vector<ScenarioStep> stepsOf(const RouterOptions& options, const ZwaveCatalogue& catalogue) {
  if (options.scenario.empty()) return {};
  return loadScenario(options.scenario,
                      [&catalogue](const std::string& name) { return catalogue.find(name) != nullptr; });
}

}  // namespace

Router::Router(const RouterOptions& options)
    : journal_(options.timeline),
      loop_(options.speed),
      catalogue_(ZwaveCatalogue::load(options.catalogue)),
      steps_(stepsOf(options, catalogue_)),
      signals_(stopSignals()),
      list_(options.database),
      zwaveServer_({loop_, journal_, happenings_}, {faults_, std::chrono::milliseconds(options.latencyMs)}, catalogue_,
                   network_, [this](ZwaveNetwork::NodeId node) { return isStored(node); }),
      haServer_({loop_, journal_, happenings_}, list_,
                [this](ZwaveNetwork::NodeId node) { return network_.deviceOf(node); }),
      control_(loop_, commands_, options.control),
      scenario_({loop_, journal_, happenings_}, commands_, steps_) {
  for (const Fault& fault : options.faults) faults_.add(fault);
  restoreNetwork();
  addCommands();
  loop_.watch(signals_.get(), [this] { loop_.stop(); });
}

int Router::run() {
  std::cout << "tembra-sim: ready" << std::endl;
  scenario_.start();
  loop_.run();
  return journal_.clean() ? 0 : 1;
}

// The nodes of an earlier run are still in the controller.
void Router::restoreNetwork() {
  for (const DeviceRecord& record : list_.devices()) {
    if (record.radioKind != RADIO_ZWAVE) continue;
    const std::string note = DeviceList::noteOf(record);
    network_.restore(static_cast<ZwaveNetwork::NodeId>(record.zwaveNode), note.empty() ? "?" : note);
  }
}

bool Router::isStored(ZwaveNetwork::NodeId node) {
  try {
    const std::vector<DeviceRecord> records = list_.devices();
    return std::any_of(records.begin(), records.end(),
                       [node](const DeviceRecord& record) { return holdsNode(record, node); });
  } catch (const std::exception& failure) {
    journal_.trouble(failure.what());
    return false;
  }
}

void Router::addCommands() {
  commands_.add("press", [this](const std::string& device) { return zwaveServer_.press(device); });
  commands_.add("fail", [this](const std::string&) { return zwaveServer_.pressFailing(); });
  commands_.add("fault", [this](const std::string& specification) { return addFault(specification); });
  commands_.add("status", [this](const std::string&) { return status(); });
  commands_.add("stop", [this](const std::string&) { return stop(); });
}

Outcome Router::addFault(const std::string& specification) {
  if (specification == "none") {
    faults_.clear();
    return {true, "no faults are set"};
  }
  try {
    faults_.add(parseFault(specification));
    return {true, "fault set: " + specification};
  } catch (const std::invalid_argument& mistake) {
    return {false, mistake.what()};
  }
}

Outcome Router::stop() {
  loop_.stop();
  return {true, "stopping"};
}

Outcome Router::status() const {
  std::string text = "Z-Wave server: " + std::string(zwaveServer_.mode()) +
                     "\nnodes joined: " + std::to_string(network_.nodes().size()) + "\n";
  for (const auto& [node, device] : network_.nodes()) text += "  node " + std::to_string(node) + "  " + device + "\n";
  text += "datagrams: " + std::to_string(journal_.received()) + " received, " + std::to_string(journal_.sent()) +
          " sent\nfaults set: " + std::to_string(faults_.count()) +
          "\nfaults found: " + std::to_string(journal_.mistakes()) +
          "\ntroubles: " + std::to_string(journal_.troubles());
  return {true, text};
}

}  // namespace tembra::sim
