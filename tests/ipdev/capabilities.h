// Rights like anybody's, also for root.
#ifndef TEMBRA_TESTS_IPDEV_CAPABILITIES_H
#define TEMBRA_TESTS_IPDEV_CAPABILITIES_H

#include <gtest/gtest.h>
#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

/// While it lives, this thread may not override file permissions.
class WithoutCapabilities {
 public:
  WithoutCapabilities() {
    EXPECT_EQ(syscall(SYS_capget, &header_, before_), 0);
    __user_cap_data_struct reduced[2] = {before_[0], before_[1]};
    reduced[0].effective = reduced[1].effective = 0;
    EXPECT_EQ(syscall(SYS_capset, &header_, reduced), 0);
  }
  ~WithoutCapabilities() { EXPECT_EQ(syscall(SYS_capset, &header_, before_), 0); }
  WithoutCapabilities(const WithoutCapabilities&) = delete;
  WithoutCapabilities& operator=(const WithoutCapabilities&) = delete;

 private:
  __user_cap_header_struct header_{_LINUX_CAPABILITY_VERSION_3, 0};
  __user_cap_data_struct before_[2] = {};
};

#endif
