// Which router of a mesh this is.
#include <tembra/globals.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include "mesh/mesh_identity.h"

int local_meshID = -1;
int assoc_meshID = -1;
unsigned char meshRx_packet[4100];

// Attribute names of a mesh participant. [sic] "REMAC5GAddress", "MasterEncrypType"
char meshTagNames[37][32] = {
    "ParticipantPosID",
    "Type",
    "BRMACAddress",
    "WIFIMACAddress",
    "WIFI5GMACAddress",
    "WANMACAddress",
    "LANMACAddress",
    "REMACAddress",
    "REMAC5GAddress",
    "AssociatedMACAddress",
    "AssociatedMeshID",
    "Is5GMesh",
    "ParticipantName",
    "ParticipantLocation",
    "ParticipantMasterName",
    "Model",
    "IpAddress",
    "MasterIpAddress",
    "MeshMode",
    "ParticipantUniqueId",
    "ParticipantUniqueName",
    "IsParticipant",
    "IsActive",
    "HopCount",
    "ParticipantSideMasterRSSI",
    "MasterSideParticipantRSSI",
    "MasterSSID",
    "MasterPassword",
    "MasterChannel",
    "MasterAuthMode",
    "MasterEncrypType",
    "ParticipantClientCount",
    "IsHACapable",
    "HADeviceCount",
    "LastKnownInternetStatus",
    "ZigbeePanID",
    "NULL",
};

namespace tembra {
namespace {

// A signal that the front end handles may interrupt the wait for the command's answer.
char* readAnswer(char* out, FILE* answer) {
  char* line = nullptr;
  do {
    clearerr(answer);
    errno = 0;
    line = fgets(out, kMeshIdTextSize, answer);
  } while (line == nullptr && errno == EINTR);
  return line;
}

}  // namespace
}  // namespace tembra

using namespace tembra;

int GetMeshId(char* out) {
  out[0] = '\0';  // an empty answer reads as id 0, not as what stood there
  FILE* answer = popen("nvram_get 2860 MeshSlaveID", "r");
  if (answer == nullptr) return -1;
  if (readAnswer(out, answer) == nullptr) out[0] = '\0';
  return pclose(answer);
}

int GetMeshId() {
  char text[kMeshIdTextSize] = {};
  GetMeshId(text);
  return std::atoi(text);
}
