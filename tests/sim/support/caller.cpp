#include "support/caller.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <algorithm>
#include <array>
#include <span>

#include "sim/core/record_bytes.h"
#include "sim/core/sockets.h"

namespace tembra::sim::test {
std::string summary(const std::vector<Heard>& all) {
  std::string text;
  for (const Heard& heard : all) {
    text.append(text.empty() ? "" : " ") += std::to_string(heard.length) + "/" + std::to_string(heard.block.nodeId);
  }
  return text;
}

std::string statuses(const std::vector<Heard>& all) {
  std::string text;
  for (const Heard& heard : all) {
    text.append(text.empty() ? "" : " ") +=
        std::to_string(heard.length) + "/" + std::to_string(heard.as<ZbDeviceInfo>().msgCode);
  }
  return text;
}

Caller::Caller() : socket_(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
  const sockaddr_in self = addressOf(kLibrary);
  EXPECT_EQ(bind(socket_.get(), reinterpret_cast<const sockaddr*>(&self), sizeof self), 0);
  constexpr timeval patience{.tv_sec = 20, .tv_usec = 0};
  setsockopt(socket_.get(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
}

void Caller::command(int operation, int controllerCommand) {
  ZwaveCommand command{};
  command.operation = operation;
  command.controllerCommand = controllerCommand;
  send(kZwaveServer, bytesOf(command));
}

void Caller::zigbee(const std::string& text, const std::string& argument) {
  ZigbeeCommand command{};
  setText(command.command, text);
  setText(command.argument, argument);
  send(kZigbeeServer, bytesOf(command));
}

void Caller::zigbeeReset() {
  zigbee("n l", "");
  zigbee("option button0", "");
}

void Caller::hue(unsigned command, const std::string& bridgeId, const std::string& argument) {
  HueCommand request{};
  request.command = command;
  setText(request.bridgeId, bridgeId);
  setText(request.argument, argument);
  send(kHueServer, bytesOf(request));
}

void Caller::nest(unsigned command, const std::string& text) {
  NestCommand request{};
  request.command = command;
  setText(request.text, text);
  send(kNestServer, bytesOf(request));
}

void Caller::send(const Endpoint& to, const std::vector<unsigned char>& datagram) {
  const sockaddr_in address = addressOf(to);
  const ssize_t sent = sendto(socket_.get(), datagram.data(), datagram.size(), 0,
                              reinterpret_cast<const sockaddr*>(&address), sizeof address);
  EXPECT_EQ(sent, static_cast<ssize_t>(datagram.size()));
}

void Caller::notice(int recordKind, const std::vector<unsigned char>& record) {
  HaNotice notice{};
  notice.recordKind = recordKind;
  std::copy(record.begin(), record.end(), notice.record);
  send(kHaServer, bytesOf(notice));
}

bool Caller::receive(Heard& heard, int flags) {
  std::array<unsigned char, 4096> buffer{};
  sockaddr_in sender{};
  socklen_t senderLength = sizeof sender;
  const ssize_t length =
      recvfrom(socket_.get(), buffer.data(), buffer.size(), flags, reinterpret_cast<sockaddr*>(&sender), &senderLength);
  if (length < 0) return false;
  std::array<char, INET_ADDRSTRLEN> senderText{};
  heard.sender = inet_ntop(AF_INET, &sender.sin_addr, senderText.data(), senderText.size());
  heard.length = static_cast<std::size_t>(length);
  heard.bytes.assign(buffer.begin(), buffer.begin() + length);
  heard.block = recordFrom<ZwNodeInfo>(std::span(buffer).first(heard.length));
  return true;
}

Heard Caller::hear() {
  Heard heard{};
  EXPECT_TRUE(receive(heard, 0)) << "no answer came";
  return heard;
}

std::vector<Heard> Caller::heardSoFar() {
  std::vector<Heard> all;
  for (Heard heard{}; receive(heard, MSG_DONTWAIT);) all.push_back(heard);
  return all;
}

}  // namespace tembra::sim::test
