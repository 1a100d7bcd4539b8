#include "model.h"

namespace oracle {

int Model::open() {
  if (running != 0) {
    line("stderr Address already in use: libTembraAssoc:Assoc binding failed");
    return -1;
  }
  running = 1;
  assocMesh = -1;
  scratch.setText("3\n");
  localMesh = 3;
  buffer.clear();
  eventA.clear();
  eventB.clear();
  eventC.clear();
  report.clear();
  log(0, "libTembraAssoc:entered receive thread");
  idle = 1;
  cancelTarget = 0;
  timeout = 180;
  log(0, "libTembraAssoc:Thread created successfully");
  cmdtype.clear();
  beginPass();
  return 0;
}

void Model::closeSilently() {
  log(0, "libTembraAssoc:closing the Assoc Connection");
  running = 0;
  assocMesh = -1;
  closeMark = -1;
}

void Model::close() {
  const bool wasOpen = running != 0;
  closeSilently();
  if (wasOpen) beginPass();
}

}  // namespace oracle
