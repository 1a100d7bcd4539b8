// Every kind of damage before the list of devices: told, never mended, and what can be read is shown.
#include <gtest/gtest.h>
#include <tembra/service.h>

#include <cerrno>
#include <vector>

#include "database/damages.h"
#include "kit/router.h"

using damages::Damage;
using kit::Router;

namespace {

constexpr std::size_t kMostShown = 60;

// The number of records in the header is nobody's but the repair's.
bool isWhole(const Damage& damage) { return damage.course == damages::Course::kOpened && damage.shown < 0; }

class DamagedList : public testing::TestWithParam<Damage> {};

INSTANTIATE_TEST_SUITE_P(Is, DamagedList, testing::ValuesIn(damages::kDamages),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace

TEST_P(DamagedList, IsToldAndLeftAsItIs) {
  Router router;
  for (int id = 1; id <= damages::kDevices; ++id) {
    router.database().put(kit::Device(id, "Lamp").zwave(static_cast<unsigned>(id)));
  }
  router.database().nextId("77").index(1, 1, "x");
  depot::Words words(router.database().file());
  GetParam().cause(words);
  router.database().replaceWith(words.file());
  std::vector<tembra_device> devices(kMostShown);
  errno = 0;
  const long result = tembra_read_devices(devices.data(), sizeof(tembra_device), kMostShown);
  EXPECT_EQ(result, isWhole(GetParam()) ? damages::kDevices : -1);
  EXPECT_EQ(errno, result < 0 ? EBADMSG : 0);
  EXPECT_TRUE(router.database().file() == words.file()) << "the file is another one now";
  int shown = 0;
  while (devices.at(static_cast<std::size_t>(shown)).id != 0) ++shown;
  EXPECT_TRUE(GetParam().shown < 0 || shown == GetParam().shown) << shown;
}
