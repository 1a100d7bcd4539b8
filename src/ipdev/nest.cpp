// Linking and unlinking a Nest account.
#include <tembra/association.h>

#include <fcntl.h>
#include <unistd.h>

#include "ipdev/ip_command.h"
#include "support/state_lock.h"
#include "support/text.h"

namespace tembra {
namespace {

constexpr const char* kAuthorisationFile = "/tmp/Authcode";

}  // namespace
}  // namespace tembra

using namespace tembra;

// The file is not opened, because any user can make something else of this name. A pipe would hold the caller for ever,
// and a link to a device would set the device to work.
int TembraAssociation::Nest_checkExist() {
  return faccessat(AT_FDCWD, kAuthorisationFile, R_OK, AT_EACCESS) == 0 ? 1 : 0;
}

unsigned char* TembraAssociation::Nest_add(char* text) {
  const StateLock lock;
  NestCommand command{};
  command.command = NEST_LINK;
  copyCallersText(command.text, text);
  return startIpOperation(*this, SERVER_NEST, command, "AddIPDevice");
}

unsigned char* TembraAssociation::Nest_remove() {
  const StateLock lock;
  NestCommand command{};
  command.command = NEST_UNLINK;
  return startIpOperation(*this, SERVER_NEST, command, "RemoveIPDevice");
}
