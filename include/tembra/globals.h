// Library-wide state that front ends read, as plain exported objects.
//
// The library writes them under its own lock, except username1, which Hue_getBridgeList writes while it has the device
// database. A front end that reads one of them while an operation runs may read an old value. Only `idle` is meant to
// be polled: it is one byte, written with release order.
//
// The names are plain ones of the whole process. A program's own global of such a name (`idle`, `buff`, `cmdtype`,
// `tempStr`, `DevId`, `username1`) would be the same object: make it `static`. `tembra-assoc doctor --program` finds
// it.
#ifndef TEMBRA_GLOBALS_H
#define TEMBRA_GLOBALS_H

#include <pthread.h>
#include <tembra/export.h>

extern TEMBRA_API unsigned char idle;  ///< 1: no operation in progress, 0: one is; initially 1
extern TEMBRA_API char cmdtype[60];    ///< "CommandType" text of the operation in progress
extern TEMBRA_API char tempStr[512];   ///< the last formatted log line, or a device-type name
extern TEMBRA_API int DevId;           ///< id of the device being added; initially 0, -1: the database cannot be opened
extern TEMBRA_API char DBName[10];     ///< path of the device database, initially "/tmp/ddb"; at most 9 characters
extern TEMBRA_API pthread_t receiver_thread;  ///< thread of the last opened connection; it is detached

// Capabilities of a generic Z-Wave device: raised to 1 while its index table is derived, cleared when the add is done.
extern TEMBRA_API unsigned char BasicFlag;         ///< it has a basic value (command class 0x20)
extern TEMBRA_API unsigned char MultilevelFlag;    ///< it has a level (command class 0x26)
extern TEMBRA_API unsigned char SensorBinaryFlag;  ///< it has a binary sensor (command class 0x30)
extern TEMBRA_API unsigned char ZwAcExtFlag;       ///< it has thermostat values (command classes 0x40, 0x43, 0x44)

extern TEMBRA_API int local_meshID;  ///< this router's mesh slave id, read when a connection opens; initially -1
extern TEMBRA_API int assoc_meshID;  ///< mesh id of the router that owns the association; -1: closed or not yet used
extern TEMBRA_API unsigned char meshRx_packet[4100];  ///< room for one mesh datagram; for front ends
extern TEMBRA_API char meshTagNames[37][32];  ///< attribute names of a mesh participant; the row "NULL" ends them

extern TEMBRA_API char username1[50][50];  ///< user names of the last Hue bridge list, then older ones

// For front ends; the library itself leaves them alone.
extern TEMBRA_API char buff[512];
extern TEMBRA_API int SensorType;
extern TEMBRA_API unsigned int HomeId;

/// Reads the router's mesh slave id as text: one line of at most 9 characters.
/// @param out  at least 10 bytes; empty when nothing could be read
/// @return the result of closing the command's pipe (0 when the command succeeded); -1 when it could not be started.
///
/// Starts a shell and waits for its end. Any thread may call this, but not while another thread opens the connection:
/// the shell might inherit the new socket, and the address would stay in use until the shell ends.
TEMBRA_API int GetMeshId(char* out);

/// Reads the router's mesh slave id as a number; 0 when nothing could be read.
TEMBRA_API int GetMeshId();

#endif
