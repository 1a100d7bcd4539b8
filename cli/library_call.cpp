#include "library_call.h"

#include <chrono>
#include <future>
#include <thread>

#include "event_inbox.h"

namespace tembra::cli {
namespace {

constexpr std::chrono::milliseconds kQuickCall{20};

}  // namespace

void runLibraryCall(const std::function<void()>& call, const std::function<void()>& whileWaiting) {
  std::packaged_task<void()> task([call] {
    const LibraryCall mark;
    call();
  });
  std::future<void> done = task.get_future();
  std::thread(std::move(task)).detach();
  while (done.wait_for(kQuickCall) != std::future_status::ready) whileWaiting();
  done.get();
}

}  // namespace tembra::cli
