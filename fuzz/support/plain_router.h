// Surroundings in which nothing happens but what the library does.
#ifndef TEMBRA_FUZZ_SUPPORT_PLAIN_ROUTER_H
#define TEMBRA_FUZZ_SUPPORT_PLAIN_ROUTER_H

#include <tembra/globals.h>

#include "support/database_file.h"
#include "support/invariant.h"
#include "support/send_check.h"
#include "support/stage.h"

namespace fuzz {

class PlainRouter : public Router {
 public:
  ssize_t receive(int /*descriptor*/, unsigned char* /*buffer*/, sockaddr_in& /*sender*/) override {
    require(false, "nobody receives");
    return -1;
  }
  void sent(const Send& send) override { checkOwnSend(send); }
};

/// A stage with a small database without devices, which gives this id. It is only read, so one lasts for all runs.
class IdStage : public Stage {
 public:
  static constexpr int kNextId = 17;

  explicit IdStage(Router& router) : Stage(router, Database::kKept) {
    static constexpr std::uint8_t kText[] = {'1', '7'};
    if (databaseFileSize() == 0) DatabaseWriter().put("NextDevid", kText);
  }
};

}  // namespace fuzz

#endif
