#include "cli/dialogue/library_call.h"

#include <future>
#include <system_error>
#include <thread>

#include "cli/failure.h"

namespace tembra::cli {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

constexpr auto kQuickCall = 20ms;
constexpr auto kBetweenLooks = 50ms;

}  // namespace

bool runLibraryCall(const Context& context, const std::function<void()>& call, std::chrono::milliseconds longest) {
  std::packaged_task<void()> task(call);
  std::future<void> done = task.get_future();
  try {
    std::thread(std::move(task)).detach();
  } catch (const std::system_error& refusal) {
    throw Failure(kFailed, "no thread can be started (" + refusal.code().message() + ").");
  }
  const auto until = steady_clock::now() + longest;
  while (done.wait_for(kQuickCall) != std::future_status::ready) {
    if (steady_clock::now() >= until) return false;
    context.attention.pause(kBetweenLooks);
  }
  return true;
}

}  // namespace tembra::cli
