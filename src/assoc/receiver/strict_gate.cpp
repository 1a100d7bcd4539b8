#include "assoc/receiver/strict_gate.h"

#include <tembra/endpoints.h>
#include <ctime>

#include <algorithm>

#include "support/log.h"
#include "support/shared_state.h"

namespace tembra {
namespace {

constexpr long long kSecond = 1'000'000;

long long now() {
  constexpr long kNanoseconds = 1'000;
  timespec time{};
  clock_gettime(CLOCK_MONOTONIC, &time);
  return time.tv_sec * kSecond + time.tv_nsec / kNanoseconds;
}

// Nobody else can bind the port of a daemon that runs, unless the daemon sets SO_REUSEADDR or SO_REUSEPORT.
bool isEndpoint(const sockaddr_in& sender) {
  static constexpr const sockaddr_in* kEndpoints[] = {&adr_ozw, &adr_zigbee, &adr_hueserver, &adr_nest, &adr_ha_assoc};
  return std::any_of(std::begin(kEndpoints), std::end(kEndpoints), [&sender](const sockaddr_in* endpoint) {
    return endpoint->sin_addr.s_addr == sender.sin_addr.s_addr && endpoint->sin_port == sender.sin_port;
  });
}

bool isRadio(ClientType type) { return type == CLIENT_ZWAVE || type == CLIENT_ZIGBEE; }

// In these two states no add or removal has left anything to be answered.
bool expectsNoDevice(int state) { return state == ASSOC_IDLE || state == ASSOC_RESET; }

bool isLate(const TembraAssociation& assoc, ClientType type) {
  return isRadio(type) && isStateLeft() && !expectsNoDevice(assoc.assocState);
}

}  // namespace

timeval StrictGate::left(int seconds) {
  const long long moment = now();
  if (waitEnds_ == kNotBegun) waitEnds_ = moment + seconds * kSecond;
  const long long rest = std::max(waitEnds_ - moment, 0LL);
  return {static_cast<time_t>(rest / kSecond), static_cast<suseconds_t>(rest % kSecond)};
}

bool StrictGate::admits(const sockaddr_in& sender, ClientType type) {
  const bool isStranger = !isEndpoint(sender);
  if (!isStranger && !isLate(assoc_, type)) return true;
  complain(isStranger ? TEMBRA_LOG_PREFIX "strict mode: dropped a stranger's datagram"
                      : TEMBRA_LOG_PREFIX "strict mode: dropped a late answer");
  return false;
}

// Whoever sends fast must not fill the log.
void StrictGate::complain(const char* text) {
  const long long moment = now();
  if (moment < nextComplaint_) return;
  nextComplaint_ = moment + kSecond;
  log(assoc_, Level::kError, text);
}

}  // namespace tembra
