// What happened in one step of a run.
#ifndef TEMBRA_TESTS_CAMPAIGN_RECORD_H
#define TEMBRA_TESTS_CAMPAIGN_RECORD_H

#include <optional>
#include <string>
#include <vector>

#include "campaign/database.h"
#include "campaign/front_end.h"
#include "campaign/plan.h"
#include "campaign/wire.h"

namespace campaign {

struct Asked {
  Time at;
  std::string request;
  bool done;
  std::string answer;
};

struct Record {
  Step step;
  Database before;
  Time began = 0;
  Time ended = 0;  ///< of the front end
  int status = -1;
  std::vector<SeenEvent> seen;
  std::vector<Asked> asked;
  std::optional<Time> interrupted;
  std::vector<Datagram> wire;  ///< from the start of the front end to a moment after its end
  Database after;
  bool linkedAfter = false;
};

}  // namespace campaign

#endif
