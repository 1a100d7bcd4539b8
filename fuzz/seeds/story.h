// A session in the making.
#ifndef TEMBRA_FUZZ_SEEDS_STORY_H
#define TEMBRA_FUZZ_SEEDS_STORY_H

#include <tembra/vocabulary.h>

#include <string_view>

#include "seeds/writer.h"
#include "session/calls.h"
#include "session/steps.h"

namespace fuzz {

inline constexpr unsigned char kSeedNode = 5;
inline constexpr unsigned short kSeedAddress = 0x1A01;
inline constexpr unsigned char kAnyType = DEVTYPE_SIREN;

class Story : public SeedWriter {
 public:
  Story& call(Call call) { return add(Step::kCall), add(call), *this; }
  Story& open() {
    call(Call::kRole), add<unsigned char>(0);
    return call(Call::kOpen);
  }
  Story& timeOut() { return add(Step::kReceiveFailure), add<unsigned char>(0), *this; }

  template <typename Record>
  Story& datagram(Sender sender, const Record& record) {
    return bytes(sender, {reinterpret_cast<const char*>(&record), sizeof record});
  }
  /// A datagram up to its last byte that is not zero.
  Story& bytes(Sender sender, std::string_view datagram) {
    while (datagram.ends_with('\0')) datagram.remove_suffix(1);
    add(Step::kDatagram), add(sender), add(static_cast<unsigned short>(datagram.size()));
    addBytes(datagram);
    return *this;
  }

  Story& device(int id, RadioKind radio, std::string_view name) {
    add(Step::kDatabase), add(Change::kPutDevice), add(static_cast<signed char>(id));
    add(static_cast<signed char>(radio)), add(kSeedNode), add(kSeedAddress), add<unsigned char>(0);
    add(static_cast<unsigned short>(name.size())), addBytes(name);
    return *this;
  }

  Story& finish() {
    call(Call::kSetType), add(kAnyType);
    call(Call::kSetName), addText("Lamp");
    return call(Call::kAddingDone).call(Call::kClose);
  }
};

}  // namespace fuzz

#endif
