#include "model.h"
#include "offsets.h"

namespace oracle {
namespace {

struct Destination {
  const char* name;
  std::size_t length;
};

// By the numbers of destinations; 0 is none.
constexpr Destination kDestinations[] = {{"", 0},      {"zigbee", 320}, {"zwave", 236},
                                         {"hue", 304}, {"nest", 256},   {"ha", 4100}};

Bytes eventBytes(const Record<4104>& event) { return {event.bytes.begin(), event.bytes.end()}; }

}  // namespace

void Model::log(int level, const std::string& text) { logged("log " + std::to_string(level) + " " + text); }

void Model::logFormatted(int level, const std::string& text) {
  scratch.setText(text);
  log(level, text);
}

void Model::logged(const std::string& line) { effects.push_back({line, {}, stateText()}); }

void Model::line(const std::string& text) { effects.push_back({text, {}, {}}); }

std::string Model::stateText() const {
  return "state " + std::to_string(state) + " idle " + std::to_string(idle) + " last " + std::to_string(lastEventCode) +
         " cancel " + std::to_string(cancelTarget) + " radio " + std::to_string(activeRadio) + " cmdtype " +
         cmdtype.text();
}

// A connection that is closed has descriptor 0, which is no socket.
bool Model::send(int server, const Bytes& datagram) {
  Bytes whole = datagram;
  whole.resize(kDestinations[server].length);
  const std::string head = std::string("send ") + kDestinations[server].name + " " + std::to_string(whole.size());
  const bool isToFail = sendsToFail > 0;
  if (!isToFail && running != 0) {
    effects.push_back({head, whole, stateText()});
    return true;
  }
  if (isToFail) --sendsToFail;
  effects.push_back({head + (isToFail ? " -> EPERM" : " -> ENOTSOCK"), whole, stateText()});
  line(isToFail ? "stderr sendto error: Operation not permitted"
                : "stderr sendto error: Socket operation on non-socket");
  return false;
}

bool Model::sendToHa(int kind, const Bytes& record) {
  Record<4> head;
  head.setNumber(0, kind);
  Bytes datagram(head.bytes.begin(), head.bytes.end());
  datagram.insert(datagram.end(), record.begin(), record.end());
  return send(kHa, datagram);
}

void Model::deliver(Record<4104>& event) {
  if (!callback) return;
  effects.push_back(
      {"event " + std::to_string(event.number(kEventCode)) + " source " + std::to_string(event.number(kEventSource)),
       eventBytes(event), stateText()});
  if (isInCallback || !inCallback) return;
  isInCallback = true;
  delivered = &event;
  const auto plan = inCallback;
  plan(*this);
  delivered = nullptr;
  isInCallback = false;
}

void Model::overwriteEvent(int byte) {
  if (delivered != nullptr) delivered->bytes.fill(static_cast<unsigned char>(byte));
}

void Model::event(Record<4104>& buffer, int code, int source) {
  buffer.setNumber(kEventCode, code);
  buffer.setNumber(kEventSource, source);
  const bool isProgress = code == 3 || code == 5 || code == 6 || code == 7 || code == 21;
  lastEventCode = isProgress ? code : 0;
  deliver(buffer);
}

std::vector<Field> Model::fields() const {
  return {fieldOf("running", running),
          fieldOf("sock, whether there is one", running),
          fieldOf("closeMark", closeMark),
          fieldOf("devName", devName),
          fieldOf("devLocation", devLocation),
          fieldOf("clientRole", role),
          fieldOf("activeRadio", activeRadio),
          fieldOf("classifiedType", classifiedType),
          fieldOf("devType", devType),
          fieldOf("removedName", removedName),
          fieldOf("removedId", removedId),
          fieldOf("zbDevice", zbDevice),
          fieldOf("zwNodeWork", zwWork),
          fieldOf("zwNodeRx", zwReceived),
          fieldOf("assocState", state),
          fieldOf("lastEventCode", lastEventCode),
          fieldOf("cancelTarget", cancelTarget),
          fieldOf("idle", idle),
          fieldOf("cmdtype", cmdtype),
          fieldOf("tempStr", scratch),
          fieldOf("DevId", deviceId),
          fieldOf("BasicFlag", raised.basic),
          fieldOf("MultilevelFlag", raised.multilevel),
          fieldOf("SensorBinaryFlag", raised.binarySensor),
          fieldOf("ZwAcExtFlag", raised.acExtender),
          fieldOf("local_meshID", localMesh),
          fieldOf("assoc_meshID", assocMesh),
          fieldOf("username1", users)};
}

}  // namespace oracle
