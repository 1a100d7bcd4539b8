#include "model.h"
#include "offsets.h"

namespace oracle {
namespace {

constexpr int kBothRadios = 3;

Bytes zigbeeDatagram(const char* command, const char* argument) {
  Record<320> datagram;
  datagram.setText(command, 0);
  datagram.setText(argument, 180);
  return {datagram.bytes.begin(), datagram.bytes.end()};
}

}  // namespace

void Model::startAdding() {
  log(0, "libTembraAssoc:inside addDevZigbeeZwave");
  cancelTarget = kBothRadios;
  commandZigbee(1);
  commandZwave(1);
  cmdtype.setText("AddDevice");
  idle = 0;
  state = 1;
}

void Model::startRemoving() {
  cancelTarget = kBothRadios;
  commandZigbee(2);
  commandZwave(2);
  cmdtype.setText("RemoveDevice");
  idle = 0;
  state = 2;
}

void Model::commandZigbee(int command) {
  if (command == 1) send(kZigbee, zigbeeDatagram("option button1", "IAS"));
  if (command == 2) send(kZigbee, zigbeeDatagram(" ", "remove"));
  if (command == 4) send(kZigbee, zigbeeDatagram("network pjoin 0", "cancel"));
  if (command != 3) return;
  send(kZigbee, zigbeeDatagram("n l", ""));
  line("sleep 2");
  wait(2);
  send(kZigbee, zigbeeDatagram("option button0", ""));
  log(0, "libTembraAssoc:Sending reset command to zigbee_server");
}

void Model::commandZwave(int command) {
  constexpr struct { int operation, controller; } kWords[] = {{1, 1}, {1, 4}, {5, 0}, {4, 0}};
  if (command < 1 || command > 4) return;
  Record<236> datagram;
  datagram.setNumber(192, kWords[command - 1].operation);
  datagram.setNumber(212, kWords[command - 1].controller);
  send(kZwave, {datagram.bytes.begin(), datagram.bytes.end()});
}

void Model::cancel(int type) {
  if (type < kZigbee || type > kBothRadios) log(2, "libTembraAssoc:Unknown cancel type");
  if (type == kZigbee || type == kBothRadios) {
    log(0, "libTembraAssoc:Sending cancel command to zigbee_server");
    commandZigbee(4);
  }
  if (type == kZwave || type == kBothRadios) {
    log(0, "libTembraAssoc:Sending cancel command to zwave_server");
    commandZwave(4);
  }
  if (type == kBothRadios) idle = 1;
}

void Model::reset(int type) {
  switch (type) {
    case 1:
      log(0, "libTembraAssoc:Sending reset command to Zigbee_server");
      commandZigbee(3);
      break;
    case 2:
      commandZwave(3);
      log(0, "libTembraAssoc:Sending reset command to Zwave_server");
      break;
    case 3:
    case 4:
      log(0, "libTembraAssoc:*** Sending reset command to Zigbee_server and Zwave_server");
      commandZigbee(3);
      commandZwave(3);
      break;
    default:
      log(2, "libTembraAssoc:Unknown reset type");
  }
  if (type == 4) {
    const std::string all = "removeAllDevices";
    log(3, "libTembraAssoc:*** Removing all devices ***");
    log(3, "libTembraAssoc:Sending removeAllDevices to haserver");
    sendToHa(0, {all.begin(), all.end()});
  }
  line("sleep 7");
  wait(7);
}

}  // namespace oracle
