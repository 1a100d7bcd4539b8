// A small front end, in the C++ of 2011: it reaches every kind of public thing, and opens no connection.
#include <arpa/inet.h>
#include <tembra/assoc.h>

#include <cstdio>
#include <cstring>

namespace {

int failures = 0;

void expect(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "front end: not so: %s\n", what);
  ++failures;
}

void onEvent(AssocEvent* event) { std::printf("event %d\n", event->code); }

}  // namespace

int main() {
  TembraAssociation* assoc = TembraAssociation::LCDAssocInit();
  expect(assoc == TembraAssociation::getInstance(), "there is one object");
  expect(assoc == TembraAssociation::singleton, "the object is known by its pointer");
  expect(assoc->clientRole == ROLE_LCD, "the role is stored");
  assoc->registerAssocEventCB(onEvent);
  expect(assoc->eventCallback == onEvent, "the callback is stored");
  expect(assoc->logger == Logger::getInstance(), "the object holds the log");
  expect(ntohs(assoc->localAddr.sin_port) == 8888 && len_assoc == 16, "the own endpoint is resolved");
  expect(idle == 1 && assoc_meshID == -1, "nothing is in progress");
  expect(std::strcmp(DBName, "/tmp/ddb") == 0, "the device database has its path");

  char name[192];
  expect(getDefaultDevName(DEVTYPE_BINARY_SWITCH, 17, name) == 16, "a default name has a length");
  expect(std::strcmp(name, "BinarySwitch #17") == 0, "a default name names the type and the id");
  return failures;
}
