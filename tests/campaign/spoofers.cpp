#include "campaign/spoofers.h"

#include <arpa/inet.h>
#include <sys/socket.h>
#include <tembra/records.h>
#include <tembra/vocabulary.h>
#include <unistd.h>

#include <vector>

#include "campaign/world_clock.h"

namespace campaign {
namespace {

constexpr Time kLongestPause = 3 * kSecond;
constexpr int kFrontEndsPort = 8888;

struct Source {
  const char* address;
  int port;  // 0: any
};

constexpr Source kSources[] = {
    {"127.255.255.254", 6666}, {"127.255.255.253", 6666}, {"127.255.255.252", 5555}, {"127.255.255.251", 5555},
    {"127.255.255.25", 8888},  {"127.255.255.2", 8888},   {"127.255.255.1", 6666},   {"127.0.0.1", 0},
};

sockaddr_in addressOf(const char* text, int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<in_port_t>(port));
  inet_pton(AF_INET, text, &address.sin_addr);
  return address;
}

// Past the record of the wire, which stands in front of sendto.
void sendFrom(const Source& source, const std::vector<unsigned char>& bytes) {
  const int descriptor = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  const sockaddr_in from = addressOf(source.address, source.port);
  const sockaddr_in to = addressOf("127.255.255.4", kFrontEndsPort);
  if (bind(descriptor, reinterpret_cast<const sockaddr*>(&from), sizeof from) == 0 &&
      connect(descriptor, reinterpret_cast<const sockaddr*>(&to), sizeof to) == 0) {
    send(descriptor, bytes.data(), bytes.size(), 0);
  }
  close(descriptor);
}

template <typename Record>
std::vector<unsigned char> bytesOf(const Record& record) {
  const auto* first = reinterpret_cast<const unsigned char*>(&record);
  return {first, first + sizeof record};
}

}  // namespace

Spoofers::Spoofers(unsigned long seed) : random_(seed), thread_([this] { run(); }) {}

// Time has to pass for the thread to see it.
Spoofers::~Spoofers() {
  isOver_ = true;
  worldClock()->sleepUntil(worldClock()->now() + kLongestPause + kSecond);
  thread_.join();
}

void Spoofers::run() {
  while (!isOver_) {
    worldClock()->sleepUntil(worldClock()->now() +
                             draw(1, static_cast<int>(kLongestPause / kMillisecond)) * kMillisecond);
    sendOne();
  }
}

// What a daemon would send, as likely as possible to be taken for an answer.
void Spoofers::sendOne() {
  const Source& source = kSources[draw(0, std::size(kSources) - 1)];
  switch (draw(0, 4)) {
    case 0: {
      ZwNodeInfo node{};
      node.nodeId = static_cast<unsigned char>(draw(0, 20));
      return sendFrom(source, bytesOf(node));
    }
    case 1: {
      ZbDeviceInfo device{};
      device.msgCode = static_cast<unsigned char>(draw(0, 12));
      device.shortAddress = static_cast<unsigned short>(draw(0, 20));
      return sendFrom(source, bytesOf(device));
    }
    case 2: {
      HueAnswer answer{};
      answer.type = draw(0, 9);
      return sendFrom(source, bytesOf(answer));
    }
    case 3: {
      NestAnswer answer{};
      answer.command = draw(0, 1) == 0 ? 100 : draw(121, 124);
      return sendFrom(source, bytesOf(answer));
    }
    default:
      return sendFrom(source, {0});
  }
}

}  // namespace campaign
