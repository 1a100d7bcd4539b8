#include "sim/nest/nest_server.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <limits>
#include <sstream>
#include <utility>

#include "sim/core/number.h"
#include "sim/core/record_bytes.h"
#include "tembra/vocabulary.h"

namespace tembra::sim {
namespace {

constexpr CodeByte kCommandByte{offsetof(NestAnswer, command), [](const MessageKind&, unsigned char) { return true; }};

// The library tells the answers apart by number only; what each one stands for is this server's choice.
constexpr NestAnswer kLinked{NEST_ANSWER_121, 0, 0};
constexpr NestAnswer kUnlinked{NEST_ANSWER_122, 0, 0};
constexpr NestAnswer kRefused{NEST_ANSWER_124, -1, 0};

std::string textOf(const NestAnswer& answer) {
  return "command " + std::to_string(answer.command) + ", status " + std::to_string(answer.status);
}

}  // namespace

struct NestServer::Command {
  unsigned code;
  std::string_view name;
  Happening happening;
  void (NestServer::*act)(const std::string& code);
};

const NestServer::Command NestServer::kCommands[2] = {
    {NEST_LINK, "link the account", Happening::kNestLink, &NestServer::link},
    {NEST_UNLINK, "unlink the account", Happening::kNestUnlink, &NestServer::unlink},
};

NestServer::NestServer(Surroundings surroundings, Answers::Manner manner, Authorisation authorisation)
    : Daemon(kNestServer, sizeof(NestCommand), surroundings),
      authorisation_(std::move(authorisation)),
      answers_(surroundings, manner, kCommandByte,
               [this](Bytes datagram, std::string_view text, Sender sender) { tellLibrary(datagram, text, sender); }) {}

void NestServer::handle(Bytes datagram) {
  const auto received = recordFrom<NestCommand>(datagram);
  const auto* const command = std::find_if(std::begin(kCommands), std::end(kCommands),
                                           [&received](const Command& row) { return row.code == received.command; });
  if (command == std::end(kCommands)) {
    found("an unknown command: " + std::to_string(received.command));
    return;
  }
  const std::string code = textIn(received.text);
  const bool strayText = command->happening == Happening::kNestUnlink && !code.empty();
  if (received.at0 != 0 || !zeroBehindText(received.text) || strayText) {
    found("bytes of a command that must be zero are not");
  }
  heard(command->name);
  surroundings().happenings.happened(command->happening);
  try {
    (this->*command->act)(code);
  } catch (const std::exception& failure) {
    surroundings().journal.trouble(failure.what());
    play(kRefused);
  }
}

// Without a code there is no account to link.
void NestServer::link(const std::string& code) {
  if (code.empty()) return play(kRefused);
  authorisation_.keep(code);
  play(kLinked);
}

void NestServer::unlink(const std::string&) {
  authorisation_.forget();
  play(kUnlinked);
}

void NestServer::play(const NestAnswer& answer) {
  answers_.play({{kNestResult, textOf(answer), bytesOf(answer)}}, nullptr);
}

Outcome NestServer::say(const std::string& what) {
  using Limits = std::numeric_limits<int>;
  NestAnswer answer{};
  std::istringstream words(what);
  std::string word;
  for (int* const field : {&answer.command, &answer.status, &answer.value}) {
    if (words >> word) *field = parseNumber(word, Limits::min(), Limits::max());
  }
  if (words >> word || what.empty()) return {false, "an answer of the Nest server is COMMAND [STATUS [VALUE]]"};
  answers_.drop();
  tellLibrary(bytesOf(answer), textOf(answer));
  return {true, textOf(answer)};
}

}  // namespace tembra::sim
