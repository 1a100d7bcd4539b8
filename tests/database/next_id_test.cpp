// The next id is one value: reading it goes from record to record of one bucket, however large that is.
#include <depot.h>
#include <gtest/gtest.h>
#include <tembra/globals.h>

#include <string>

#include "kit/router.h"

TEST(NextId, IsFoundInABucketOfAnySize) {
  kit::Router router;
  for (const int records : {0, 1, 1000}) {
    SCOPED_TRACE(records);
    router.database().remove();
    DEPOT* file = dpopen(DBName, DP_OWRITER | DP_OCREAT, 1);
    ASSERT_NE(file, nullptr);
    for (int i = 0; i < records; ++i) dpput(file, std::to_string(i).c_str(), -1, "x", -1, DP_DOVER);
    dpput(file, "NextDevid", -1, "77", -1, DP_DOVER);
    ASSERT_NE(dpclose(file), 0);
    EXPECT_EQ(router.assoc().calculateDevId(), 77);
  }
}
