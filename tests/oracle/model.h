// The association service, told a second time and as plainly as possible: plain data, and one function for each thing
// that can happen. It knows nothing of the library's code; record bytes are named by their offset on purpose.
#ifndef TEMBRA_TESTS_ORACLE_MODEL_H
#define TEMBRA_TESTS_ORACLE_MODEL_H

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "database.h"
#include "effect.h"
#include "record.h"
#include "sub_types.h"

namespace oracle {

struct Model {
  // ---- The service object -------------------------------------------------------------------------------------------
  int running = 0;
  int closeMark = 0;
  Record<180> devName;
  Record<180> devLocation;
  int role = 2;
  int activeRadio = 0;
  int classifiedType = 0;
  int devType = 0;
  Record<180> removedName;
  int removedId = 0;
  Record<444> zbDevice;
  Record<1036> zwWork;
  Record<1036> zwReceived;
  int state = 0;
  int lastEventCode = 0;
  int cancelTarget = 0;

  // ---- The globals --------------------------------------------------------------------------------------------------
  unsigned char idle = 1;
  Record<60> cmdtype;
  Record<512> scratch;
  int deviceId = 0;
  Capabilities raised;
  int localMesh = -1;
  int assocMesh = -1;
  std::array<Record<50>, 50> users{};

  // ---- The receive thread's own -------------------------------------------------------------------------------------
  Record<4096> buffer;
  Record<4104> eventA, eventB, eventC;
  Record<1788> report;
  int timeout = 180;
  long left = 180;  // seconds of the wait under way

  // ---- What is around -----------------------------------------------------------------------------------------------
  Database database;
  bool authorised = false;
  int sendsToFail = 0;
  bool callback = true;
  std::function<void(Model&)> inCallback;  // what the callback does from now on
  bool isInCallback = false;
  Record<4104>* delivered = nullptr;  // what the callback under way got

  // ---- What comes of it ---------------------------------------------------------------------------------------------
  std::vector<Effect> effects;
  bool unforeseen = false;  // it met a bridge that is not one of hue_entries.h, and cannot tell what becomes of it

  [[nodiscard]] std::vector<Field> fields() const;

  // ---- Connection (connection.cpp) ----------------------------------------------------------------------------------
  int open();
  void close();          // a front end's
  void closeSilently();  // of whichever thread: what follows is the receive loop's business
  void takeRole(int number) { role = number; }

  // ---- Receiving (receiving.cpp) ------------------------------------------------------------------------------------
  void receive(const std::string& sender, const Bytes& datagram);
  void wait(long seconds);
  void beginPass();
  void timeOut();
  void setTimeout(int seconds, const char* line);

  // ---- What the answers do (zwave_answers.cpp, zigbee_answers.cpp, ip_answers.cpp)
  // -----------------------------------
  void zwaveAnswer();
  void zwaveJoins(int node);
  void zwaveIdentified(int node);
  void zwaveDescribed();
  void zwaveLeaves(int node);
  void zwaveLeft();
  void zwaveAddFailed();
  void offerTypes(int radio);
  void announceDevice(int radio);
  void zigbeeAnswer();
  void zigbeeAdding(int status);
  void zigbeeFound();
  void zigbeeDescribing();
  void zigbeeFailed(int status);
  void zigbeeDescribed();
  void zigbeeLeaving();
  void hueAnswer();
  void hueBridges();
  void nestAnswer();

  // ---- Commands to the radios (radio_calls.cpp)
  // ----------------------------------------------------------------------
  void startAdding();
  void startRemoving();
  void cancel(int type);
  void reset(int type);
  void commandZigbee(int command);
  void commandZwave(int command);

  // ---- The device being added (naming_calls.cpp)
  // ---------------------------------------------------------------------
  void chooseType(int type);
  void changeType(int type);
  void setName(const std::string& name);
  void setLocation(const std::string& location);
  void rewriteIndexes(int type);
  void rewriteIndex(int from, int to);
  int finish();

  // ---- Hue and Nest (ip_calls.cpp)
  // ------------------------------------------------------------------------------------
  void hueDiscover() { hueCommand(114, {}, {}, nullptr); }
  void hueAddBridge(const std::string& mac) { hueCommand(100, mac, {}, "AddIPDevice"); }
  void hueAddBulb(const std::string& mac, const std::string& text) { hueCommand(105, mac, text, "AddHueDevice"); }
  void hueRefresh(const std::string& mac, const std::string& text) { hueCommand(106, mac, text, "RefreshIPDevice"); }
  void hueRemove(const std::string& mac) { hueCommand(109, mac, {}, "RemoveIPDevice"); }
  void nestAdd(const std::string& text) { nestCommand(100, text, "AddIPDevice"); }
  void nestRemove() { nestCommand(109, {}, "RemoveIPDevice"); }
  void hueCommand(int command, const std::optional<std::string>& mac, const std::string& argument,
                  const char* operation);
  void nestCommand(int command, const std::string& text, const char* operation);
  std::string bridgeList();

  // ---- The database and what is read there (lookups.cpp)
  // --------------------------------------------------------------
  bool openDatabase();
  void nextDeviceId();
  bool findZwaveNode();
  void removeZwaveNode();
  void findZigbeeDevice();
  void remember(const Row& row);

  // ---- Classification (classification.cpp)
  // ----------------------------------------------------------------------------
  bool classifyZwave();
  int classifyZigbee();
  bool listSubTypes(int type);

  // ---- What can be seen (seen.cpp)
  // ------------------------------------------------------------------------------------
  void log(int level, const std::string& text);
  void logFormatted(int level, const std::string& text);  // which stands in the scratch text first
  void logged(const std::string& line);
  void line(const std::string& text);
  void result(const std::string& text) { line("result " + text); }
  bool send(int server, const Bytes& datagram);
  bool sendToHa(int kind, const Bytes& record);
  void deliver(Record<4104>& event);
  void overwriteEvent(int byte);
  void event(Record<4104>& buffer, int code, int source);
  [[nodiscard]] std::string stateText() const;
};

std::string macOf(const std::string& bridgeId);
std::string bridgeIdOf(const std::string& mac);

}  // namespace oracle

#endif
