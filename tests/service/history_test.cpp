// What became of damaged databases.
#include <gtest/gtest.h>
#include <tembra/service.h>

#include "kit/router_test.h"

using kit::Call;
using kit::Device;

namespace {

class History : public kit::RouterTest {
 protected:
  static void expectHistory(unsigned repaired, unsigned lost) {
    struct tembra_database_history history = {sizeof history, 77, 77};
    EXPECT_EQ(tembra_read_database_history(&history), 0);
    EXPECT_EQ(history.repaired, repaired);
    EXPECT_EQ(history.lost, lost);
  }
};

}  // namespace

TEST_F(History, CountsRepairsAndLosses) {
  TembraAssociation& assoc = router.connect();
  expectHistory(0, 0);
  router.database().nextId("17").put(Device(1, "A"));
  EXPECT_EQ(assoc.calculateDevId(), 17);
  expectHistory(0, 0);
  router.database().makeRepairable();
  EXPECT_EQ(assoc.calculateDevId(), 17);
  expectHistory(1, 0);
  router.database().makeRepairable();
  assoc.zb_removeNode(7);
  expectHistory(2, 0);
  router.database().makeUnopenable();
  EXPECT_EQ(assoc.calculateDevId(), -1);
  expectHistory(2, 1);
  assoc.calculateDevId();
  expectHistory(2, 1);
}

// Neither repaired nor lost: the file is as it was.
TEST_F(History, CountsNoFileThatIsNotToBlame) {
  TembraAssociation& assoc = router.connect();
  router.database().nextId("17");
  router.fail(Call::kOpenDatabase, kit::depotError(DP_EOPEN, EMFILE), 2);
  assoc.calculateDevId();
  expectHistory(0, 0);
}

// The file opens by itself the second time.
TEST_F(History, CountsNoRepairThatFailed) {
  TembraAssociation& assoc = router.connect();
  router.database().nextId("17");
  router.fail(Call::kOpenDatabase, kit::depotError(DP_EOPEN, EIO));
  router.fail(Call::kRepairDatabase, kit::depotError(DP_EBROKEN, EIO));
  EXPECT_EQ(assoc.calculateDevId(), 17);
  expectHistory(0, 0);
}

TEST_F(History, CountsNoLookAtADamagedFile) {
  router.database().put(Device(1, "A"));
  router.database().makeRepairable();
  tembra_device device{};
  EXPECT_EQ(tembra_read_devices(&device, sizeof device, 1), -1);
  expectHistory(0, 0);
}
