#ifndef TEMBRA_FUZZ_SUPPORT_SEND_CHECK_H
#define TEMBRA_FUZZ_SUPPORT_SEND_CHECK_H

#include "support/stage.h"

namespace fuzz {

/// What holds for every datagram that is sent: it has its destination's length, and all of it can be read.
void checkSend(const Send& send);

/// What holds, too, for those that the library itself builds: texts end, and zeros stand where nothing else does.
void checkOwnSend(const Send& send);

}  // namespace fuzz

#endif
