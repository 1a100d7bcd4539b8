// What the library sends, in words.
#ifndef TEMBRA_TESTS_CAMPAIGN_COMMAND_TEXT_H
#define TEMBRA_TESTS_CAMPAIGN_COMMAND_TEXT_H

#include <string>

#include "campaign/wire.h"

namespace campaign {

/// "zigbee add", "hue 109 02a1b2fffe0c0001 ", "ha zwave 5 added".
std::string commandText(const Datagram& datagram);

}  // namespace campaign

#endif
