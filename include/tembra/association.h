// The association service: adds, names, resets and removes the devices of a home.
#ifndef TEMBRA_ASSOCIATION_H
#define TEMBRA_ASSOCIATION_H

#include <netinet/in.h>
#include <tembra/events.h>
#include <tembra/export.h>
#include <tembra/platform.h>
#include <tembra/records.h>
#include <tembra/vocabulary.h>

/// The one service object of a process. Get it from the initialiser of your role, register a callback, open the
/// connection, then give commands; results come back through the callback:
///
///     TembraAssociation* assoc = TembraAssociation::webServerAssocInit();
///     assoc->registerAssocEventCB(onEvent);
///     if (assoc->checkAssocConnection() != 0) return noConnection();
///     assoc->addDevZigbeeZwave();             // EVENT_ADDING, EVENT_GETTING_INFO, then one of:
///                                             //   EVENT_SELECT_TYPE (choose one of subTypes), EVENT_CREATED
///     assoc->setDevType(type);                // generates the default name, sends EVENT_CREATED again
///     assoc->setDevName(name);                // optional; after setDevType
///     assoc->setDevLocation(location);        // optional; after setDevType
///     assoc->addingDone();                    // hands the device to the HA server
///     assoc->closeAssocConnection();
///
/// Threads: any thread may call any operation at any time; each call is atomic to the others and to the handling of
/// a datagram, except that the library's lock is released while a callback runs, while sleeping, from before the wait
/// for the device database until it is closed again, while an opening runs the mesh id's shell command, and while a
/// closing waits (at most 2 seconds) for the receive that is under way to end.
///
/// Run one operation at a time, from its start to its last event: a second add or remove sends its commands again, it
/// is not refused; and where an operation is cancelled and another one started while the answer to the first waits for
/// the database, what follows that look-up (state, `idle`, `cmdtype`, an event) is written over the second.
///
/// The callback runs on the library's receive thread (on the caller's thread for setDevType). It may call any
/// operation, but should not start one: what follows the callback in the library (state, `idle`) would overwrite what
/// the callback started. All signals are blocked on the receive thread, and a process that a callback starts inherits
/// that: unblock them in it. The object lives as long as the process and is never deleted by the library.
///
/// Results are 0 for success and -1 for failure unless a function says otherwise. No operation throws, but what
/// makes the object (see getInstance) lets pass what goes wrong there.
class TEMBRA_API TembraAssociation {
 public:
  // The state of the service, for front ends to read. Order and types are fixed; nothing stands between them.
  int running;            ///< 1 while the connection is open
  int closeMark;          ///< -1 once closeAssocConnection was called
  char devName[180];      ///< name of the device being added
  char devLocation[180];  ///< location of the device being added
  int sock;               ///< descriptor of the library's socket, 0: not open
  int clientRole;         ///< ClientRole of the front end
  int activeRadio;        ///< ServerType that the current operation is dealing with
  int classifiedType;     ///< DevType proposed by classification
  int devType;            ///< DevType chosen for the device being added; also written by classifying a ZigBee device
  char removedName[180];  ///< name of the device being removed
  int removedId;          ///< device id of the device being removed
  ZbDeviceInfo zbDevice;  ///< the ZigBee device being added
  ZwNodeInfo zwNodeWork;  ///< the Z-Wave node being added, as it will be handed to the HA server
  ZwNodeInfo zwNodeRx;    ///< the Z-Wave node as last received
  sockaddr_in localAddr;  ///< the library's own endpoint
  Logger* logger;
  void (*eventCallback)(AssocEvent*);  ///< null: events are dropped
  int assocState;                      ///< AssocState
  int lastEventCode;                   ///< last progress event (3, 5, 6, 7, 21), 0 after any other
  int cancelTarget;                    ///< cancel_type that a time-out cancels, 0: none

  static TembraAssociation* singleton;  ///< null until the first initialiser was called

  /// Copies no field: the copy has the virtual table and nothing else. The library never copies the object.
  TembraAssociation(const TembraAssociation& other);
  TembraAssociation& operator=(const TembraAssociation&) = delete;

  /// Closes nothing and stops nothing.
  virtual ~TembraAssociation();

  // ---- Roles ------------------------------------------------------------------------------------------------------

  /// The object, created by the first call: fetches the Logger and resolves every endpoint; opens and sends nothing.
  /// An exception of the router's Logger, or std::bad_alloc, passes through and leaves no object.
  static TembraAssociation* getInstance();

  // Each returns getInstance() after storing its ClientRole; a later role replaces an earlier one on the same object.
  static TembraAssociation* webServerAssocInit();
  static TembraAssociation* LCDAssocInit();
  static TembraAssociation* cloudappsAssocInit();
  static TembraAssociation* meshServerAssocInit();
  static TembraAssociation* FreeUsr1AssocInit();
  static TembraAssociation* FreeUsr2AssocInit();

  /// Sets the one callback for events; a later call replaces it, null switches events off. An event being delivered
  /// on another thread may still reach the old callback after this returns.
  void registerAssocEventCB(void (*callback)(AssocEvent*));

  // ---- Connection -------------------------------------------------------------------------------------------------

  /// Opens the library's UDP socket, reads the mesh id (runs a shell command) and starts the receive thread. Start no
  /// operation, on any thread, before it has returned: the new receive thread begins with `idle` 1, no cancel target
  /// and an empty `cmdtype`.
  /// @return 0 when the socket is open and bound, even if the thread could not be started; -1 otherwise: while this or
  /// another process has the connection open, which then stays as it is; when the socket cannot be had; and when
  /// another thread closed or replaced the connection during the opening.
  int checkAssocConnection();

  /// Closes the connection and ends the receive thread, without waiting for a callback that is running; waits for a
  /// receive that is under way to end, at most 2 seconds. Neither the association state nor the pending device is
  /// reset: cancel or finish an operation before closing.
  void closeAssocConnection();

  /// Resolves the endpoint texts into the socket addresses. The constructor calls it. @return 0; a bad host is
  /// reported on standard error, a bad port is not reported at all.
  int ConnectToServers();

  /// Sends one datagram of the destination's fixed length: 320 bytes to the ZigBee server, 236 to the Z-Wave server,
  /// 304 to the Hue server, 256 to the Nest server, 4100 to the HA server, none to the mesh server.
  /// @return 0 when sent (and for the mesh server), -1 when sending failed or the destination is unknown.
  int sendToServers(ServerType type, void* datagram);

  /// Tells a daemon by the address of its datagram; the port does not count.
  ClientType findClientType(in_addr address);

  /// Entry of the receive thread; `self` is the object.
  static void* receiverHelper(void* self);

  /// The receive thread's loop, on this object; the argument is not looked at. Returns null when `running` has become
  /// 0, or when the connection was closed.
  void* receiver(void* self);

  // ---- Commands to the radios -------------------------------------------------------------------------------------

  /// Starts adding on both radios. Failures to send are reported on standard error only; without any answer
  /// EVENT_TIMEOUT ends the operation after at most 180 seconds.
  void addDevZigbeeZwave();

  /// Starts removing on both radios; see addDevZigbeeZwave.
  void removeDevZigbeeZwave();

  /// Cancels an add or remove on one or both radios. Only cancel_both sets `idle` back to 1. An answer that comes
  /// late is still handled.
  void sendCancelTo(cancel_type type);

  /// Resets one or both radio networks, and with reset_both_and_remove_all drops every device. Blocks for 7 seconds,
  /// 9 when the ZigBee network is reset.
  void doResetFor(reset_type type);

  /// Sends one command; a reset of the ZigBee network blocks for 2 seconds. Unknown commands send nothing.
  void cmdToZigbee(zigbee_cmd command);
  void cmdToZwave(zwave_cmd command);

  // ---- The device being added -------------------------------------------------------------------------------------

  /// Confirms the type: takes a new device id, generates the default name ("GenericDevice #<id>" for a device that
  /// was classified as generic), sets the location to "Default" and sends EVENT_CREATED on the caller's thread.
  ///
  /// Once the callback of EVENT_SELECT_TYPE has returned, the receive thread still writes `cmdtype`
  /// ("SelectDeviceType") and the devType of that moment as the type in the device's record (zwNodeWork.finalType or
  /// zbDevice.devType). Called from the callback, setDevType is always followed by that. Called on another thread it
  /// has to come after that to keep its own `cmdtype` ("EditNameLocation") and, for a generic Z-Wave device, its
  /// final type 60: wait a moment after the callback has returned, which a user who chooses does anyway.
  void setDevType(DevType type);

  /// Changes the type only: no name, no event.
  void setDevType2(DevType type);

  /// Sets the name, or the location: at most 179 characters, the rest is cut; keep below 32 for ZigBee devices, whose
  /// record has no room for more. Null means empty.
  void setDevName(char* name);
  void setDevLocation(char* location);

  /// Rewrites the index table of a generic Z-Wave device for the type that the user chose.
  void GenericIndexType(DevType type);

  /// Replaces the type of the first index entry of type `from` by `to`.
  void ChangeIndexType(IndexType from, IndexType to);

  /// Finishes the add: sends the device with its name and location to the HA server and sets `idle` to 1.
  /// @return 0 when sent, -1 when not.
  int addingDone();

  // ---- Hue bridges and lamps, the Nest account ----------------------------------------------------------------------

  // Commands to the Hue server. Each marks an operation as in progress and returns the address of `idle`, which the
  // answer or a time-out sets back to 1. Two answers leave it as it is, so that only the next answer or the time-out
  // does: a bridge list (EVENT_HUE_BRIDGES, which even sets it to 0) and an answer of unknown type, which is no event.
  // Answers come as the EVENT_HUE codes. After each of them, of whatever type, the connection of the role web server
  // closes. MAC texts are "a1:b2:...", a second text is cut at 49 characters; null means empty.
  unsigned char* Hue_initiateAdd();                  ///< discovers bridges
  unsigned char* Hue_addBridge(char* mac);           ///< adds a bridge; its link button has to be pressed
  unsigned char* Hue_addDev(char* mac, char* text);  ///< adds a lamp
  unsigned char* Hue_refreshBridge(char* mac, char* text);
  unsigned char* Hue_remove(char* mac);

  /// The known bridges and their users as JSON, at most 20:
  /// {"MAClist":[{"mac":"a1:b2:c3:0a:1b:2c","username":"..."}]}
  /// Overwrites username1 from its start, and does not clear it before: a bridge without a stored user shows the name
  /// that an earlier call left in its place. Waits for the database's file lock; a database that cannot be opened is
  /// repaired and, when that does not help, deleted (but not for want of descriptors, memory or disk space).
  /// @return a text that the caller releases with free(); null when the database cannot be opened or memory is short.
  char* Hue_getBridgeList();

  /// 1 when an authorisation code of a Nest account is stored, else 0.
  int Nest_checkExist();

  // Commands to the Nest server. Each marks an operation as in progress and returns the address of `idle`, which any
  // answer or a time-out sets back to 1. Answers come as the EVENT_NEST codes, an unknown one is no event; after each
  // the connection of the role web server closes. A text is cut at 247 characters; null means empty.
  unsigned char* Nest_add(char* text);
  unsigned char* Nest_remove();

  // ---- Classification, called by the receive thread ---------------------------------------------------------------

  /// 1 when the device database holds the Z-Wave node of zwNodeRx, else 0. On a match removedName and removedId are
  /// that device's; with several the last one's.
  int ZW_checkNodeExists();

  /// Classifies the node of zwNodeRx and fills zwNodeWork. @return 1 when classified, 0 when the node has no basic
  /// class.
  int ZW_createDeviceType();

  /// 1 when `commandClass` stands in a list of at most 53 command classes that ends with 0xFF, else 0.
  int CommandExists(unsigned char* list, unsigned char commandClass);

  /// Derives the index table of zwNodeWork from at most 181 value triples (three bytes each: command class, index,
  /// instance) that end with command class 0.
  void ZW_indexToEnum(unsigned char* triples);

  /// Tells the HA server to drop the devices whose node is that of zwNodeRx. @return 0 whenever the database was
  /// opened, else the result of deleting it, -1 when it was not deleted.
  int ZW_removeNode();

  /// Tells the HA server to drop every device.
  void removeAllDevices();

  /// The id that the next device gets, also stored in DevId; -1 (and DevId unchanged) when the database cannot be
  /// opened. Waits for the database's file lock.
  int calculateDevId();

  /// The device-type name of an IAS zone type, for the manufacturer and model of zbDevice; never null.
  const char* GetDeviceTypeInStringFormat(unsigned short zoneType);

  /// Classifies zbDevice by its clusters (see <tembra/rules.h>): its type, default name and index table. @return 0, or
  /// -1 for a metering switch whose measured values are missing; the record is then half-written.
  int validate_DeviceType();

  /// Takes a new device id and classifies zbDevice. @return the result of validate_DeviceType.
  int zb_createAnyDevice();

  /// Finds the device with this address in the device database: removedName and removedId are that device's, with
  /// several the last one's. @return 0 when found, -1 when not (zbDevice.msgCode is then 12), the result of deleting
  /// the database when it could not be opened (-1 when it was not deleted).
  int zb_removeNode(unsigned short shortAddress);

  /// Writes the types that a user may choose instead of `type` into `out`, which the caller cleared (at most 6
  /// entries). @return the last entry written, or `out` when none was.
  DevType* listSubDevType(DevType type, DevType* out);

 private:
  TembraAssociation();
};

/// Writes the default name of a device, "<type name> #<id>", into `out`, which holds at least 192 bytes.
/// @return its length; 0 when `out` is null.
TEMBRA_API int getDefaultDevName(DevType type, int id, char* out);

#endif
