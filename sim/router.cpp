#include "sim/router.h"

#include <algorithm>
#include <exception>
#include <iostream>
#include <memory>

#include "sim/core/signals.h"
#include "sim/radio/restored_networks.h"
#include "sim/replay/traffic.h"

namespace tembra::sim {
namespace {

std::vector<ScenarioStep> stepsOf(const RouterOptions& options, const Home& home) {
  if (options.scenario.empty()) return {};
  return loadScenario(options.scenario, [&home](const std::string& name) { return home.has(name); });
}

bool has(const RouterOptions& options, std::string_view server) {
  return std::find(options.without.begin(), options.without.end(), server) == options.without.end();
}

HaServer::NoteOf deviceIn(const RadioNetwork& network) {
  return [&network](RadioNetwork::Address address) { return network.deviceAt(address); };
}

}  // namespace

Router::Router(const RouterOptions& options)
    : bridges_(options.bridges),
      journal_(options.timeline, options.recording),
      loop_(options.speed),
      manner_{faults_, std::chrono::milliseconds(options.latencyMs)},
      home_(Home::load(options.catalogue, options.ownDevices)),
      steps_(stepsOf(options, home_)),
      signals_(stopSignals()),
      list_(options.database),
      zwave_(kZwaveServer.name, has(options, "zwave"),
             [this] {
               return std::make_unique<ZwaveServer>(surroundings_, manner_, home_.zwave, zwaveNetwork_,
                                                    [this](unsigned char node) { return isStored(node); });
             }),
      zigbee_(kZigbeeServer.name, has(options, "zigbee"),
              [this] { return std::make_unique<ZigbeeServer>(surroundings_, manner_, home_.zigbee, zigbeeNetwork_); }),
      haServer_(surroundings_, list_, {deviceIn(zwaveNetwork_), deviceIn(zigbeeNetwork_)}),
      hue_(
          kHueServer.name, has(options, "hue"),
          [this] { return std::make_unique<HueServer>(surroundings_, manner_, HueLamps(haServer_, list_), bridges_); }),
      nest_(kNestServer.name, has(options, "nest"),
            [this, file = options.authorisation] {
              return std::make_unique<NestServer>(surroundings_, manner_, Authorisation(file));
            }),
      control_(loop_, commands_, options.control),
      scenario_(surroundings_, commands_, steps_) {
  for (const Fault& fault : options.faults) faults_.add(fault);
  restoreNetworks(list_, zwaveNetwork_, zigbeeNetwork_);
  if (!options.recording.empty()) recordDatabase(list_, journal_);
  for (const std::string& word : options.without) journal_.recordFact(serverLine(word, false));
  addRequests();
  loop_.watch(signals_.get(), [this] { loop_.stop(); });
}

int Router::run() {
  std::cout << "tembra-sim: ready" << std::endl;
  scenario_.start();
  loop_.run();
  journal_.endRecording();
  return journal_.clean() ? 0 : 1;
}

bool Router::isStored(unsigned char node) {
  try {
    const std::vector<DeviceRecord> records = list_.devices();
    return std::any_of(records.begin(), records.end(),
                       [node](const DeviceRecord& record) { return holdsNode(record, node); });
  } catch (const std::exception& failure) {
    journal_.trouble(failure.what());
    return false;
  }
}

}  // namespace tembra::sim
