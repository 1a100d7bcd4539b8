// A file of a recorder: pcapng or pcap.
#include <cstdint>
#include <sstream>
#include <stdexcept>
#include <string>

#include "recording/reader.h"
#include "support/invariant.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::istringstream stream(std::string(reinterpret_cast<const char*>(data), size));
  try {
    tembra::recording::Reader reader(stream);
    unsigned long packet = 0;
    std::size_t kept = 0;
    while (const auto datagram = reader.next()) {
      fuzz::require(datagram->packet > packet, "packets are numbered upwards");
      packet = datagram->packet;
      kept += datagram->payload.size();
      for (const auto& comment : reader.takeComments()) kept += comment.text.size();
      fuzz::require(kept <= size, "what is read stands in the file");
    }
  } catch (const std::runtime_error& refusal) {
    const std::string text = refusal.what();
    fuzz::require(!text.empty() && text.find('\n') == std::string::npos, "a refusal is one sentence");
  }
  return 0;
}
