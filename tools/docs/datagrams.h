// Which record travels between the library and which server, and what the commands mean. The page on wire formats and
// the Wireshark dissector are made from these rows.
#ifndef TEMBRA_TOOLS_DOCS_DATAGRAMS_H
#define TEMBRA_TOOLS_DOCS_DATAGRAMS_H

#include <array>
#include <string_view>

#include "sim/core/endpoints.h"

namespace docs {

struct DatagramRow {
  const tembra::sim::Endpoint& server;
  std::string_view request;  ///< the record that the server takes
  std::string_view answer;   ///< the record that it answers with; empty: it does not answer
};

inline constexpr std::array kDatagrams{
    DatagramRow{tembra::sim::kZwaveServer, "ZwaveCommand", "ZwNodeInfo"},
    DatagramRow{tembra::sim::kZigbeeServer, "ZigbeeCommand", "ZbDeviceInfo"},
    DatagramRow{tembra::sim::kHueServer, "HueCommand", "HueAnswer"},
    DatagramRow{tembra::sim::kNestServer, "NestCommand", "NestAnswer"},
    DatagramRow{tembra::sim::kHaServer, "HaNotice", ""},
};

struct CommandRow {
  std::string_view record;
  std::string_view firstField;
  std::string_view first;        ///< a text or a number
  std::string_view secondField;  ///< empty: the first field says it all
  std::string_view second;
  std::string_view meaning;
};

inline constexpr std::array kCommands{
    CommandRow{"ZigbeeCommand", "command", "option button1", "argument", "IAS", "add"},
    CommandRow{"ZigbeeCommand", "command", " ", "argument", "remove", "remove"},
    CommandRow{"ZigbeeCommand", "command", "n l", "argument", "", "reset"},
    CommandRow{"ZigbeeCommand", "command", "option button0", "argument", "", "reset, second half"},
    CommandRow{"ZigbeeCommand", "command", "network pjoin 0", "argument", "cancel", "cancel"},
    CommandRow{"ZwaveCommand", "operation", "1", "controllerCommand", "1", "add"},
    CommandRow{"ZwaveCommand", "operation", "1", "controllerCommand", "4", "remove"},
    CommandRow{"ZwaveCommand", "operation", "5", "controllerCommand", "0", "reset"},
    CommandRow{"ZwaveCommand", "operation", "4", "controllerCommand", "0", "cancel"},
    CommandRow{"HueCommand", "command", "114", "", "", "discover"},
    CommandRow{"HueCommand", "command", "100", "", "", "add bridge"},
    CommandRow{"HueCommand", "command", "105", "", "", "add bulb"},
    CommandRow{"HueCommand", "command", "106", "", "", "refresh"},
    CommandRow{"HueCommand", "command", "109", "", "", "remove bridge"},
    CommandRow{"NestCommand", "command", "100", "", "", "link"},
    CommandRow{"NestCommand", "command", "109", "", "", "unlink"},
};

}  // namespace docs

#endif
