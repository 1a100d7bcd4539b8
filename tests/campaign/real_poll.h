// The C library's own poll, behind the interposed one.
#ifndef TEMBRA_TESTS_CAMPAIGN_REAL_POLL_H
#define TEMBRA_TESTS_CAMPAIGN_REAL_POLL_H

#include <poll.h>

#include <span>

namespace campaign {

int realPoll(std::span<pollfd> entries, int milliseconds);

}  // namespace campaign

#endif
