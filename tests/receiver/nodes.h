// The Z-Wave nodes that several tests let join.
#ifndef TEMBRA_TESTS_RECEIVER_NODES_H
#define TEMBRA_TESTS_RECEIVER_NODES_H

#include "kit/node.h"

const kit::Node kSwitch = kit::Node(5).generic(0x10).specific(1);   // types to choose from: 42, 1, 43
const kit::Node kGateway = kit::Node(5).generic(0x02).specific(7);  // none

#endif
