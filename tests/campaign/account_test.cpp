// The account can find everything that it looks at: what the library sends for an add is altered.
#include <gtest/gtest.h>

#include "campaign/account.h"

namespace campaign {
namespace {

using Sentences = std::vector<std::string>;

// As the library sends it when an add begins.
std::vector<Datagram> addBegins() {
  std::vector<unsigned char> zigbee(320);
  std::vector<unsigned char> zwave(236);
  const std::string command = "option button1";
  const std::string argument = "IAS";
  std::ranges::copy(command, zigbee.begin());
  std::ranges::copy(argument, zigbee.begin() + 180);
  zwave[192] = zwave[212] = 1;
  return {{0, kLibraryAddress, kZigbeeAddress, zigbee}, {0, kLibraryAddress, kZwaveAddress, zwave}};
}

Sentences found(const std::vector<Datagram>& sent) {
  Account account;
  account.take(0, [](Counterpart& model) { model.open(), model.startAdding(); }, {});
  for (const Datagram& each : sent) account.take(each);
  return account.differences();
}

struct AlteredSends {
  Sentences found;
  void (*alter)(std::vector<Datagram>& sent);
};

const AlteredSends kAlteredSends[] = {
    {{"only the model sends: zwave add", "only the library sends: zwave add, with byte 235 1 for 0"},
     [](std::vector<Datagram>& sent) { sent[1].bytes.back() = 1; }},
    {{"only the model sends: zwave add", "only the library sends: zwave cancel, with byte 192 4 for 1"},
     [](std::vector<Datagram>& sent) { sent[1].bytes[192] = 4; }},
    {{"only the model sends: zigbee add"}, [](std::vector<Datagram>& sent) { sent.erase(sent.begin()); }},
    {{"only the library sends: zigbee add"}, [](std::vector<Datagram>& sent) { sent.push_back(sent[0]); }},
};

}  // namespace

TEST(Account, FindsNothingWhereTheLibrarySendsWhatTheModelSends) { EXPECT_EQ(found(addBegins()), Sentences{}); }

TEST(Account, FindsEveryAlteration) {
  for (const AlteredSends& each : kAlteredSends) {
    std::vector<Datagram> sent = addBegins();
    each.alter(sent);
    EXPECT_EQ(found(sent), each.found);
  }
}

// A reset sends its second half two seconds behind the first.
TEST(Account, ExpectsNothingBehindTheEndOfAConnection) {
  Account account;
  account.take(0, [](Counterpart& model) { model.open(), model.reset(1); }, {});
  account.take(kSecond, [](Counterpart& model) { model.closeSilently(); }, {});
  EXPECT_EQ(account.differences(), Sentences{"only the model sends: zigbee reset, first half"});
}

}  // namespace campaign
