// A watch that is closed with its pointer.
#ifndef TEMBRA_TESTS_FRONTEND_WATCH_POINTER_H
#define TEMBRA_TESTS_FRONTEND_WATCH_POINTER_H

#include <tembra/watch.h>

#include <memory>

namespace tembra::test {

struct CloseWatch {
  void operator()(tembra_watch* watch) const { tembra_watch_close(watch); }
};
using Watch = std::unique_ptr<tembra_watch, CloseWatch>;

}  // namespace tembra::test

#endif
