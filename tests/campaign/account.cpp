#include "campaign/account.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <tembra/association.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <iterator>
#include <limits>
#include <map>
#include <optional>
#include <tuple>

#include "campaign/command_text.h"
#include "kit/database.h"

namespace campaign {
namespace {

std::atomic<Account*> kept = nullptr;

// The model's waits are the world's: it never times out by itself.
constexpr long kNever = std::numeric_limits<long>::max() / 2;

const std::map<std::string, const char*>& addresses() {
  static const std::map<std::string, const char*> all = {{"zigbee", kZigbeeAddress},
                                                         {"zwave", kZwaveAddress},
                                                         {"hue", kHueAddress},
                                                         {"nest", kNestAddress},
                                                         {"ha", kHaAddress}};
  return all;
}

// The destination of "send zigbee 320"; null when there is an error behind it.
const char* destinationOf(const oracle::Effect& effect) {
  for (const auto& [name, address] : addresses()) {
    if (effect.line == "send " + name + " " + std::to_string(effect.bytes.size())) return address;
  }
  return nullptr;
}

bool isBefore(const Datagram& one, const Datagram& other) {
  return std::tie(one.to, one.bytes) < std::tie(other.to, other.bytes);
}

std::vector<Datagram> onlyIn(const std::vector<Datagram>& some, const std::vector<Datagram>& others) {
  std::vector<Datagram> rest;
  std::ranges::set_difference(some, others, std::back_inserter(rest), isBefore);
  return rest;
}

// Where two datagrams to the same server part.
std::string partingText(const Datagram& models, const Datagram& librarys) {
  const auto [ours, theirs] = std::ranges::mismatch(models.bytes, librarys.bytes);
  if (models.to != librarys.to || ours == models.bytes.end() || theirs == librarys.bytes.end()) return "";
  return ", with byte " + std::to_string(ours - models.bytes.begin()) + " " + std::to_string(*theirs) + " for " +
         std::to_string(*ours);
}

std::vector<oracle::Row> rows() {
  std::vector<oracle::Row> all;
  for (const auto& [key, value] : kit::Database().all()) all.push_back({key, {value.begin(), value.end()}});
  return all;
}

// Of the receive thread; none: it is another thread.
thread_local std::optional<Turn> receivers;

void timeOut(Counterpart& model) {
  if (model.running == 0) return;
  model.timeOut();
  model.beginPass();
}

std::string senderOf(const sockaddr* from) {
  char text[INET_ADDRSTRLEN] = {};
  inet_ntop(AF_INET, &reinterpret_cast<const sockaddr_in*>(from)->sin_addr, text, sizeof text);
  return text;
}

}  // namespace

void Counterpart::keepOffered() {
  const int code = delivered->number(0);
  if (code != 6 && code != 7) return;
  isZigbee_ = delivered->number(4) == 1;
  offered_ = zbDevice;
}

void Account::take(Time at, const Happening& happening, const std::vector<oracle::Row>& database) {
  const std::lock_guard lock(mutex_);
  sendWhatIsDue(at);
  // Not by getInstance, which takes the library's lock: the library sends while it holds that.
  if (const TembraAssociation* const service = TembraAssociation::singleton) model_.role = service->clientRole;
  model_.database = {database, oracle::Health::kGood};
  model_.left = kNever;
  happening(model_);
  takeEffects(at);
}

void Account::takeEffects(Time at) {
  auto* sends = &expected_;
  for (const oracle::Effect& effect : std::exchange(model_.effects, {})) {
    int seconds = 0;
    if (std::sscanf(effect.line.c_str(), "sleep %d", &seconds) == 1) {
      at += seconds * kSecond;
      sends = &later_;
    }
    if (const char* const to = destinationOf(effect)) sends->push_back({at, kLibraryAddress, to, effect.bytes});
  }
}

void Account::sendWhatIsDue(Time at) {
  const auto due = std::partition(later_.begin(), later_.end(), [at](const Datagram& each) { return each.at > at; });
  if (model_.running != 0) expected_.insert(expected_.end(), due, later_.end());
  later_.erase(due, later_.end());
}

void Account::take(const Datagram& sent) {
  const std::lock_guard lock(mutex_);
  sent_.push_back(sent);
}

std::vector<std::string> Account::differences() {
  const std::lock_guard lock(mutex_);
  std::vector<std::string> sentences;
  sendWhatIsDue(std::numeric_limits<Time>::max());
  std::ranges::sort(expected_, isBefore);
  std::ranges::sort(sent_, isBefore);
  const std::vector<Datagram> models = onlyIn(expected_, sent_);
  const std::vector<Datagram> librarys = onlyIn(sent_, expected_);
  sentences.reserve(models.size() + librarys.size());
  for (const Datagram& each : models) sentences.push_back("only the model sends: " + commandText(each));
  for (std::size_t i = 0; i < librarys.size(); ++i) {
    const std::string parting = i < models.size() ? partingText(models[i], librarys[i]) : "";
    sentences.push_back("only the library sends: " + commandText(librarys[i]) + parting);
  }
  return sentences;
}

void keepAccount(Account* account) { kept = account; }

// The database first: whoever has it open may be about to send.
Turn accountFor(const Happening& happening) {
  static std::mutex& turns = *new std::mutex;  // used until the very end of the process
  Account* const account = kept;
  if (account == nullptr) return {};
  Turn turn(turns);
  const std::vector<oracle::Row> database = rows();
  account->take(worldClock()->now(), happening, database);
  return turn;
}

void accountFor(const Datagram& sent) {
  Account* const account = kept;
  if (account != nullptr && sent.from == kLibraryAddress) account->take(sent);
}

ReceiveThread::ReceiveThread() { receivers.emplace(); }

ReceiveThread::~ReceiveThread() { receivers.reset(); }

void ReceiveThread::waits() {
  if (receivers) *receivers = {};
}

void ReceiveThread::hears(const sockaddr* from, const void* data, ssize_t size) {
  if (!receivers) return;
  const auto* bytes = static_cast<const unsigned char*>(data);
  *receivers = accountFor([=](Counterpart& model) {
    size < 0 ? timeOut(model) : model.receive(senderOf(from), {bytes, bytes + size});
  });
}

}  // namespace campaign
