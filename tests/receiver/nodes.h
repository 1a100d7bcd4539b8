// The Z-Wave nodes that several tests let join.
#ifndef TEMBRA_TESTS_RECEIVER_NODES_H
#define TEMBRA_TESTS_RECEIVER_NODES_H

#include "harness/node.h"

const harness::Node kSwitch = harness::Node(5).generic(0x10).specific(1);   // types to choose from: 42, 1, 43
const harness::Node kGateway = harness::Node(5).generic(0x02).specific(7);  // none

#endif
