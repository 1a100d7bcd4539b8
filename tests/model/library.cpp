#include "library.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <utility>

#include "kit/database.h"
#include "operations.h"

namespace oracle {
namespace {

constexpr char kAuthorisation[] = "/tmp/Authcode";

template <typename Plain>
void clear(Plain& plain) {
  std::memset(&plain, 0, sizeof plain);
}

// A closed connection has descriptor 0: here it is never a socket.
void occupyDescriptorZero() {
  const int null = open("/dev/null", O_RDONLY | O_CLOEXEC);
  dup2(null, 0);
  if (null != 0) close(null);
}

void writeRows(const std::vector<Row>& rows) {
  const kit::OpenDatabase database;
  for (const Row& row : rows) database.put(row.key, row.value);
}

// "send zigbee 320 ... -> EPERM" without what the datagram says: its bytes are compared.
std::string headOf(const std::string& line) {
  std::size_t end = 0;
  for (int blanks = 0; blanks < 3 && end != std::string::npos; ++blanks) end = line.find(' ', end + (end == 0 ? 0 : 1));
  const auto failure = line.rfind(" -> E");
  std::string head = line.substr(0, end);
  if (failure != std::string::npos) head += line.substr(failure);
  return head;
}

Bytes bytesOf(const AssocEvent& event) {
  const auto* first = reinterpret_cast<const unsigned char*>(&event);
  return {first, first + sizeof event};
}

}  // namespace

Library::Library() {
  occupyDescriptorZero();
  router_.watch(kit::kWatchTimeouts);
  router_.onLog([this](const std::string&) { logStates_.push_back(kit::stateText()); });
  router_.onEvent([this](AssocEvent* event) { runInCallback(event); });
}

void Library::begin() {
  if (TembraAssociation::singleton != nullptr) router_.close();
  TembraAssociation::LCDAssocInit();
  clearFields();
  inCallback_.clear();
  router_.fail(kit::Call::kSendto, 0, 0);
  setDatabase({}, Health::kMissing);
  setAuthorised(false);
  router_.registerCallback();
  router_.open();
  takeEffects();
}

void Library::clearFields() {
  TembraAssociation& object = assoc();
  for (int* number : {&object.running, &object.closeMark, &object.activeRadio, &object.classifiedType, &object.devType,
                      &object.removedId, &object.assocState, &object.lastEventCode, &object.cancelTarget, &DevId}) {
    *number = 0;
  }
  clear(object.devName);
  clear(object.devLocation);
  clear(object.removedName);
  clear(object.zbDevice);
  clear(object.zwNodeWork);
  clear(object.zwNodeRx);
  clear(cmdtype);
  clear(tempStr);
  clear(username1);
  idle = 1;
  BasicFlag = MultilevelFlag = SensorBinaryFlag = ZwAcExtFlag = 0;
  local_meshID = assoc_meshID = -1;
}

std::vector<Effect> Library::perform(const Step& step) {
  step.operation->onLibrary(*this, step);
  router_.settle();
  return takeEffects();
}

void Library::runInCallback(AssocEvent* event) {
  if (isInCallback_ || inCallback_.empty()) return;
  isInCallback_ = true;
  delivered_ = event;
  const Step step = inCallback_.front();
  step.operation->onLibrary(*this, step);
  delivered_ = nullptr;
  isInCallback_ = false;
}

void Library::overwriteEvent(int byte) {
  if (delivered_ != nullptr) std::memset(delivered_, byte, sizeof *delivered_);
}

std::vector<Effect> Library::takeEffects() {
  std::vector<Effect> effects;
  std::istringstream trace(router_.takeTrace());
  const auto sends = router_.takeSends();
  const auto events = router_.takeEvents();
  const auto states = std::exchange(logStates_, {});
  auto send = sends.begin();
  auto event = events.begin();
  auto state = states.begin();
  for (std::string line; std::getline(trace, line);) {
    if (line.rfind("send ", 0) == 0) {
      effects.push_back({headOf(line), send->bytes, send->state});
      ++send;
    } else if (line.rfind("event ", 0) == 0) {
      effects.push_back({line, bytesOf(event->event), event->state});
      ++event;
    } else if (line.rfind("log ", 0) == 0) {
      effects.push_back({line, {}, *state++});
    } else {
      effects.push_back({line, {}, {}});
    }
  }
  return effects;
}

void Library::result(const std::string& text) { kit::trace().add("result " + text); }

void Library::receive(const std::string& sender, const Bytes& datagram) {
  const std::pair<const char*, kit::Peer&> daemons[] = {{"127.255.255.254", router_.zwave()},
                                                        {"127.255.255.253", router_.zigbee()},
                                                        {"127.255.255.252", router_.hue()},
                                                        {"127.255.255.251", router_.nest()},
                                                        {"127.255.255.1", router_.ha()}};
  for (const auto& [address, peer] : daemons) {
    if (sender == address) return peer.send(datagram);
  }
  router_.from(sender).send(datagram);
}

void Library::setDatabase(const std::vector<Row>& rows, Health health) {
  router_.database().remove();
  if (health == Health::kMissing) return;
  if (health == Health::kCannotBeOpened) return router_.database().makeUnopenable();
  writeRows(rows);
  if (health == Health::kNeedsRepair) router_.database().makeRepairable();
}

void Library::setAuthorised(bool authorised) {
  std::filesystem::remove(kAuthorisation);
  if (authorised) std::ofstream(kAuthorisation).flush();
}

std::vector<Field> Library::fields() {
  const TembraAssociation& object = assoc();
  hasSocket_ = object.sock == 0 ? 0 : 1;
  return {fieldOf("running", object.running),
          fieldOf("sock, whether there is one", hasSocket_),
          fieldOf("closeMark", object.closeMark),
          fieldOf("devName", object.devName),
          fieldOf("devLocation", object.devLocation),
          fieldOf("clientRole", object.clientRole),
          fieldOf("activeRadio", object.activeRadio),
          fieldOf("classifiedType", object.classifiedType),
          fieldOf("devType", object.devType),
          fieldOf("removedName", object.removedName),
          fieldOf("removedId", object.removedId),
          fieldOf("zbDevice", object.zbDevice),
          fieldOf("zwNodeWork", object.zwNodeWork),
          fieldOf("zwNodeRx", object.zwNodeRx),
          fieldOf("assocState", object.assocState),
          fieldOf("lastEventCode", object.lastEventCode),
          fieldOf("cancelTarget", object.cancelTarget),
          fieldOf("idle", idle),
          fieldOf("cmdtype", cmdtype),
          fieldOf("tempStr", tempStr),
          fieldOf("DevId", DevId),
          fieldOf("BasicFlag", BasicFlag),
          fieldOf("MultilevelFlag", MultilevelFlag),
          fieldOf("SensorBinaryFlag", SensorBinaryFlag),
          fieldOf("ZwAcExtFlag", ZwAcExtFlag),
          fieldOf("local_meshID", local_meshID),
          fieldOf("assoc_meshID", assoc_meshID),
          fieldOf("username1", username1)};
}

}  // namespace oracle
