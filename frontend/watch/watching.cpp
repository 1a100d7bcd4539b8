#include "watching.h"

#include <tembra/vocabulary.h>
#include <tembra/watch.h>

#include <algorithm>
#include <cerrno>
#include <ctime>

#include "failure_file.h"
#include "history.h"
#include "texts.h"

namespace tembra::frontend {
namespace {

constexpr int kForHolder = 50;  // milliseconds for its answer

std::string textOr(const char* text, const char* other) { return text != nullptr ? text : other; }

std::string elapsed(long long seconds) {
  if (seconds < 120) return std::to_string(seconds) + (seconds == 1 ? " second" : " seconds");
  return std::to_string(seconds / 60) + " minutes";
}

}  // namespace

Watching::Watching(const tembra_options& options, const Outbox& outbox, Inbox& inbox)
    : path_(textOr(options.watch_path, "")),
      self_{options.role == 0 ? ROLE_LCD : options.role, textOr(options.program, program_invocation_short_name), 0, 0},
      outbox_(outbox),
      inbox_(inbox) {}

std::string Watching::begin() {
  if (path_.empty() || server_) return "";
  server_.emplace(path_, self_, *this);
  if (server_->error().empty()) return "";
  std::string error = complained_ ? "" : server_->error();
  complained_ = true;
  server_.reset();
  return error;
}

void Watching::publish(const std::string& json) {
  if (server_) server_->publish(outbox_.state().last_event, json);
}

void Watching::leave() {
  if (server_) server_->leave();
}

void Watching::keepFailure() const noexcept {
  if (!path_.empty()) frontend::keepFailure(path_, history());
}

WatchServer::State Watching::state() {
  const tembra_state now = outbox_.state();
  return {stateJson(now), now.last_event};
}

void Watching::cancelAsked() { static_cast<void>(inbox_.cancel()); }

std::string Watching::tellHolder(tembra_ended& ended) const {
  auto holder = sized<tembra_holder>();
  if (path_.empty() || tembra_read_holder(path_.c_str(), kForHolder, &holder) != 0) return "";
  ended.holder_pid = holder.pid;
  ended.holder_role = holder.role;
  ended.holder_since = holder.since;
  if (isPlainText(holder.program)) putText(ended.holder_program, holder.program);
  putText(ended.holder_operation, holder.operation);
  putText(ended.holder_phase, holder.phase);
  const std::string name = *ended.holder_program == '\0' ? "a program" : ended.holder_program;
  std::string text = name + " (process " + std::to_string(holder.pid) + ") for ";
  text += elapsed(std::max(0LL, std::time(nullptr) - holder.since));
  return holder.operation == std::string("none") ? text : text + ", doing " + holder.operation;
}

}  // namespace tembra::frontend
