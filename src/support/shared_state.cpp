#include "support/shared_state.h"

#include <tembra/globals.h>

#include <cstring>

#include "support/text.h"

unsigned char idle = 1;
char cmdtype[60];
char tempStr[512];
int DevId = 0;
pthread_t receiver_thread;

unsigned char BasicFlag = 0;
unsigned char MultilevelFlag = 0;
unsigned char SensorBinaryFlag = 0;
unsigned char ZwAcExtFlag = 0;

char username1[50][50];

char buff[512];
int SensorType = 0;
unsigned int HomeId = 0;

namespace tembra {
namespace {

bool stateIsLeft = false;

}  // namespace

void setStateLeft(bool value) { stateIsLeft = value; }

bool isStateLeft() { return stateIsLeft; }

void setIdle(bool value) { __atomic_store_n(&idle, static_cast<unsigned char>(value ? 1 : 0), __ATOMIC_RELEASE); }

bool isIdle() { return __atomic_load_n(&idle, __ATOMIC_ACQUIRE) != 0; }

void setCommandType(const char* text) { copyCallersText(cmdtype, text); }

void clearCommandType() { std::memset(cmdtype, 0, sizeof cmdtype); }

// Front ends look at the state and the socket while the library works.
void setState(TembraAssociation& assoc, AssocState state) {
  __atomic_store_n(&assoc.assocState, state, __ATOMIC_RELAXED);
}

void setSocket(TembraAssociation& assoc, int descriptor) {
  __atomic_store_n(&assoc.sock, descriptor, __ATOMIC_RELAXED);
}

void setAssociationMeshId(int id) { assoc_meshID = id; }

}  // namespace tembra
