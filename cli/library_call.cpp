#include "library_call.h"

#include <chrono>
#include <future>
#include <system_error>
#include <thread>

#include "event_inbox.h"
#include "failure.h"

namespace tembra::cli {
namespace {

constexpr std::chrono::milliseconds kQuickCall{20};

void startThread(std::packaged_task<void()> task) {
  try {
    std::thread(std::move(task)).detach();
  } catch (const std::system_error& refusal) {
    throw Failure(kFailed, "no thread can be started (" + refusal.code().message() + ").");
  }
}

}  // namespace

void runLibraryCall(const std::function<void()>& call, const std::function<void()>& whileWaiting) {
  std::packaged_task<void()> task([call] {
    const LibraryCall mark;
    call();
  });
  std::future<void> done = task.get_future();
  startThread(std::move(task));
  while (done.wait_for(kQuickCall) != std::future_status::ready) whileWaiting();
  done.get();
}

}  // namespace tembra::cli
