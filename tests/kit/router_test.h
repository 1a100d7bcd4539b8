// The fixtures of most tests: using CancelTest = kit::ConnectedTest.
#ifndef TEMBRA_TESTS_KIT_ROUTER_TEST_H
#define TEMBRA_TESTS_KIT_ROUTER_TEST_H

#include <gtest/gtest.h>

#include "kit/router.h"

namespace kit {

/// A test that connects when it is ready to.
class RouterTest : public testing::Test {
 protected:
  Router router;
};

/// A test that begins with an open connection.
class ConnectedTest : public RouterTest {
 protected:
  TembraAssociation& assoc = router.connect();
};

}  // namespace kit

#endif
