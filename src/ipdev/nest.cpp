// Linking and unlinking a Nest account.
#include <tembra/association.h>

#include <cstdio>

#include "ipdev/ip_command.h"
#include "support/state_lock.h"
#include "support/text.h"

using tembra::StateLock;

namespace {

enum NestCode : unsigned { kLinkAccount = 100, kUnlinkAccount = 109 };

constexpr const char* kAuthorisationFile = "/tmp/Authcode";

}  // namespace

int TembraAssociation::Nest_checkExist() {
  std::FILE* file = std::fopen(kAuthorisationFile, "rb");
  if (file == nullptr) return 0;
  std::fclose(file);
  return 1;
}

unsigned char* TembraAssociation::Nest_add(char* text) {
  const StateLock lock;
  NestCommand command{};
  command.command = kLinkAccount;
  tembra::copyCallersText(command.text, text);
  return tembra::startIpOperation(*this, SERVER_NEST, command, "AddIPDevice");
}

unsigned char* TembraAssociation::Nest_remove() {
  const StateLock lock;
  NestCommand command{};
  command.command = kUnlinkAccount;
  return tembra::startIpOperation(*this, SERVER_NEST, command, "RemoveIPDevice");
}
