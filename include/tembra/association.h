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
/// Threads: any thread may call any operation at any time. Each call is atomic to the other calls and to the handling
/// of a datagram, because it holds the library's lock. The lock is released
/// - while a callback runs,
/// - while the library sleeps or waits for a datagram,
/// - from before the wait for the device database until the database is closed again,
/// - while an opening runs the mesh id's shell command,
/// - while an opening waits for its receive thread to begin, at most 2 seconds,
/// - while a closing waits for the receive that is under way, at most 2 seconds.
///
/// Run one operation at a time, from its start to its last event. The library refuses nothing: a second add or remove
/// sends its commands again. If you cancel an operation and start another one while the first waits for the database,
/// the rest of the first (state, `idle`, `cmdtype`, an event) is written over the second.
///
/// The callback runs on the library's receive thread (for setDevType on the caller's thread). The callback may call any
/// operation, but should not start one: what the library writes after the callback (state, `idle`) would overwrite the
/// new operation. All signals are blocked on the receive thread. A process that a callback starts inherits this:
/// unblock them in it. The object lives as long as the process; the library never deletes it.
///
/// Results are 0 for success and -1 for failure unless a function says otherwise. No operation throws, except that
/// getInstance and the role initialisers pass on an exception of the router's Logger or std::bad_alloc.
class TEMBRA_API TembraAssociation {
 public:
  // The state of the service, for front ends to read. Order and types are fixed; nothing stands between them.
  //
  // Thread: the library writes the fields under its lock, on the receive thread and in calls. Read them in the
  // callback, or while no operation runs. At other moments a number may be old, and a text or a record may be
  // half-written.
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
  Logger* logger;         ///< the router's log, where every line of the library goes
  void (*eventCallback)(AssocEvent*);  ///< null: events are dropped
  int assocState;                      ///< AssocState
  int lastEventCode;                   ///< last progress event (3, 5, 6, 7, 21), 0 after any other
  int cancelTarget;                    ///< cancel_type that a time-out cancels, 0: none

  static TembraAssociation* singleton;  ///< null until the first initialiser was called

  /// Copies no field: the copy has the virtual table and nothing else. The library never copies the object.
  TembraAssociation(const TembraAssociation& other);
  TembraAssociation& operator=(const TembraAssociation&) = delete;

  /// Does not close the connection, and does not end the receive thread.
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

  /// Sets the one callback for events. A later call replaces the callback, null switches events off. An event that is
  /// being delivered on another thread may still reach the old callback after this returns.
  void registerAssocEventCB(void (*callback)(AssocEvent*));

  // ---- Connection -------------------------------------------------------------------------------------------------

  /// Opens the library's UDP socket, reads the mesh id (runs a shell command) and starts the receive thread. Start no
  /// operation, on any thread, before this call has returned: the new receive thread begins with `idle` 1, no cancel
  /// target and an empty `cmdtype`. Events: none.
  /// @return 0 when the socket is open and bound, even if the thread could not be started; -1
  /// - while this or another process has the connection open, which then stays as it is,
  /// - when the socket cannot be had,
  /// - when another thread closed or replaced the connection during the opening.
  /// tembra_last_failure (<tembra/service.h>) tells which it was.
  int checkAssocConnection();

  /// Closes the connection and ends the receive thread. Waits for the end of a receive that is under way, at most 2
  /// seconds, but not for a callback that is running. Neither the association state nor the pending device is reset:
  /// cancel or finish an operation before closing. Events: none, but a callback that is running goes on.
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

  /// Entry of the receive thread; `self` is the object. @return what receiver returns.
  static void* receiverHelper(void* self);

  /// The receive thread's loop, on this object; the argument is not looked at. Returns null when `running` has become
  /// 0, or when the connection was closed.
  void* receiver(void* self);

  // ---- Commands to the radios -------------------------------------------------------------------------------------

  /// Starts adding on both radios. A failure to send is reported on standard error only.
  /// Events: EVENT_ADDING, EVENT_GETTING_INFO, then EVENT_SELECT_TYPE or EVENT_CREATED, after which setDevType and
  /// addingDone finish the add. Or, as the end: EVENT_ALREADY_ADDED (Z-Wave), EVENT_ADD_FAILED, EVENT_TIMEOUT. The
  /// first answer is awaited for at most 180 seconds.
  ///
  /// The command begins no new wait. Late in the wait that is under way EVENT_TIMEOUT comes early, perhaps at once:
  /// open the connection anew before each operation, which gives it the whole time. A receive that fails counts as a
  /// time-out, too: stopping or tracing the process (SIGSTOP, a debugger) ends an add.
  void addDevZigbeeZwave();

  /// Starts removing on both radios, in the wait that is under way, like addDevZigbeeZwave. A failure to send is
  /// reported on standard error only.
  /// Events: EVENT_REMOVED, EVENT_REMOVED_UNKNOWN or EVENT_TIMEOUT. After the first two, a ZigBee removal is over. A
  /// Z-Wave removal is over when `idle` is 1 again, or with EVENT_TIMEOUT 20 seconds later.
  void removeDevZigbeeZwave();

  /// Cancels an add or remove on one or both radios. Only cancel_both sets `idle` back to 1. The state stays, so an
  /// answer that comes late is still handled. Events: none, except those of a late answer.
  void sendCancelTo(cancel_type type);

  /// Resets one or both radio networks, and with reset_both_and_remove_all drops every device. Blocks for 7 seconds,
  /// 9 when the ZigBee network is reset. Events: none.
  void doResetFor(reset_type type);

  /// Sends one command and changes no state. A reset of the ZigBee network blocks for 2 seconds. Unknown commands send
  /// nothing. Events: those that the state of the moment makes of an answer.
  void cmdToZigbee(zigbee_cmd command);
  void cmdToZwave(zwave_cmd command);

  // ---- The device being added -------------------------------------------------------------------------------------

  /// Confirms the type: takes a new device id, generates the default name, sets the location to "Default" and sends
  /// EVENT_CREATED on the caller's thread. The default name of a device that was classified as generic is
  /// "GenericDevice #<id>". Events: EVENT_CREATED, before this call returns.
  ///
  /// The receive thread still writes a little after the callback of EVENT_SELECT_TYPE has returned: `cmdtype`
  /// ("SelectDeviceType"), and the devType of that moment as the type in the device's record (zwNodeWork.finalType or
  /// zbDevice.devType). Called from that callback, setDevType is always followed by these writes. On another thread
  /// call tembra_settle (<tembra/service.h>) before it. Otherwise its `cmdtype` ("EditNameLocation") and the final type
  /// 60 of a generic Z-Wave device may be overwritten.
  void setDevType(DevType type);

  /// Changes the type only: no name. Events: none.
  void setDevType2(DevType type);

  /// Sets the name: at most 179 characters, the rest is cut. Keep a ZigBee device's name below 32 characters, because
  /// its record has no room for more. Null means empty.
  void setDevName(char* name);

  /// Sets the location, by the same rules.
  void setDevLocation(char* location);

  /// Rewrites the index table of a generic Z-Wave device for the type that the user chose.
  void GenericIndexType(DevType type);

  /// Replaces the type of the first index entry of type `from` by `to`.
  void ChangeIndexType(IndexType from, IndexType to);

  /// Finishes the add: sends the device with its name and location to the HA server and sets `idle` to 1. Events: none.
  /// @return 0 when sent, -1 when not.
  int addingDone();

  // ---- Hue bridges and bulbs, the Nest account ----------------------------------------------------------------------

  // Commands to the Hue server. Each marks an operation as in progress and returns the address of `idle`. The answer,
  // or EVENT_TIMEOUT, sets `idle` back to 1. Two answers do not: a bridge list, which sets `idle` to 0, and an answer
  // of unknown type, which is no event. Then the next answer or the time-out does.
  //
  // After each answer, of whatever type, the connection of the role web server closes. A MAC text is "a1:b2:...", a
  // second text is cut at 49 characters, and null means empty.
  //
  // The Hue server decides which answer a command gets. These are the events that fit, with EVENT_TIMEOUT and
  // EVENT_HUE_FAILED for each:

  /// Discovers bridges. Events: EVENT_HUE_BRIDGES.
  unsigned char* Hue_initiateAdd();

  /// Adds a bridge, whose link button has to be pressed. Events: EVENT_HUE_ADDED, EVENT_HUE_BUTTON,
  /// EVENT_HUE_NO_BRIDGE, EVENT_HUE_UNKNOWN_BRIDGE.
  unsigned char* Hue_addBridge(char* mac);

  /// Adds a bulb; the text names the bulb. Events: EVENT_HUE_BULB_ADDED, EVENT_HUE_UNKNOWN_BRIDGE.
  unsigned char* Hue_addDev(char* mac, char* text);

  /// Looks for changes of a bridge; the Hue server knows what the text means. Events: EVENT_HUE_DONE or
  /// EVENT_HUE_DONE_2, EVENT_HUE_UNKNOWN_BRIDGE.
  unsigned char* Hue_refreshBridge(char* mac, char* text);

  /// Removes a bridge and its bulbs. Events: EVENT_HUE_DONE or EVENT_HUE_DONE_2, EVENT_HUE_UNKNOWN_BRIDGE.
  unsigned char* Hue_remove(char* mac);

  /// The known bridges and their users as JSON, at most 20:
  /// {"MAClist":[{"mac":"a1:b2:c3:0a:1b:2c","username":"..."}]}
  /// Overwrites username1 from its start and does not clear it before: a bridge without a stored user shows the name
  /// that an earlier call left in its place. Waits for the database's file lock. A database that does not open is
  /// repaired, and deleted when that does not help; it is kept when descriptors, memory or disk space ran out.
  /// Events: none.
  /// @return a text that the caller releases with free(); null when the database cannot be opened or memory is short.
  char* Hue_getBridgeList();

  /// @return 1 when an authorisation code of a Nest account is stored, else 0.
  int Nest_checkExist();

  // Commands to the Nest server. Each marks an operation as in progress and returns the address of `idle`, which any
  // answer or EVENT_TIMEOUT sets back to 1. An unknown answer is no event. After each answer the connection of the role
  // web server closes. A text is cut at 247 characters; null means empty.
  //
  // Events of each: EVENT_TIMEOUT, or one of EVENT_NEST_41 to EVENT_NEST_46. The Nest server decides which.

  /// Links the account of an authorisation code.
  unsigned char* Nest_add(char* text);

  /// Unlinks the account.
  unsigned char* Nest_remove();

  // ---- Classification, called by the receive thread ---------------------------------------------------------------

  /// Looks up the Z-Wave node of zwNodeRx. On a match removedName and removedId are that device's; of several devices
  /// the last counts. @return 1 when the device database holds the node, else 0.
  int ZW_checkNodeExists();

  /// Classifies the node of zwNodeRx and fills zwNodeWork. @return 1 when classified, 0 when the node has no basic
  /// class.
  int ZW_createDeviceType();

  /// @return 1 when `commandClass` stands in a list of at most 53 command classes that ends with 0xFF, else 0.
  int CommandExists(unsigned char* list, unsigned char commandClass);

  /// Derives the index table of zwNodeWork from at most 181 value triples (three bytes each: command class, index,
  /// instance) that end with command class 0.
  void ZW_indexToEnum(unsigned char* triples);

  /// Tells the HA server to drop the devices whose node is that of zwNodeRx. @return 0 whenever the database was
  /// opened, else the result of deleting it, -1 when it was not deleted.
  int ZW_removeNode();

  /// Tells the HA server to drop every device.
  void removeAllDevices();

  /// Finds the id that the next device gets, and stores it in DevId. Waits for the database's file lock.
  /// @return the id; -1, with DevId unchanged, when the database cannot be opened.
  int calculateDevId();

  /// @return the device-type name of an IAS zone type, for the manufacturer and model of zbDevice; never null.
  const char* GetDeviceTypeInStringFormat(unsigned short zoneType);

  /// Classifies zbDevice by its clusters (see <tembra/rules.h>): its type, default name and index table. @return 0, or
  /// -1 for a metering switch whose measured values are missing; the record is then half-written.
  int validate_DeviceType();

  /// Takes a new device id and classifies zbDevice. @return the result of validate_DeviceType.
  int zb_createAnyDevice();

  /// Finds the device with this address in the device database: removedName and removedId are that device's; of several
  /// devices the last counts. @return 0 when found; -1 when not, and zbDevice.msgCode is then 12. When the database
  /// could not be opened: the result of deleting it, -1 when it was not deleted.
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
