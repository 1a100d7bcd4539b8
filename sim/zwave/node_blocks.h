// The node blocks that the Z-Wave server sends.
#ifndef TEMBRA_SIM_ZWAVE_NODE_BLOCKS_H
#define TEMBRA_SIM_ZWAVE_NODE_BLOCKS_H

#include "sim/zwave/catalogue.h"
#include "tembra/records.h"

namespace tembra::sim {

inline constexpr unsigned char kNoNode = 0;
inline constexpr unsigned char kFailedNode = 255;

/// A block that names the node and says nothing else.
ZwNodeInfo bareNode(unsigned char node);

/// The node's full information.
ZwNodeInfo describedNode(unsigned char node, const ZwaveDevice& device);

}  // namespace tembra::sim

#endif
