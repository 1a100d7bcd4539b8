// A daemon as a process: it can be killed, and started again without a memory of what it was doing.
#ifndef TEMBRA_SIM_CORE_PROCESS_H
#define TEMBRA_SIM_CORE_PROCESS_H

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "sim/core/outcome.h"

namespace tembra::sim {

class Killable {
 public:
  explicit Killable(std::string_view name) : name_(name) {}
  Killable(const Killable&) = delete;
  Killable& operator=(const Killable&) = delete;
  virtual ~Killable() = default;

  virtual bool running() const = 0;
  /// Nothing is sent any more, and what arrives is lost.
  virtual void kill() = 0;
  /// Throws what the daemon's construction throws.
  virtual void start() = 0;

  std::string text() const { return "the " + std::string(name_); }

 private:
  std::string_view name_;
};

template <typename Server>
class Process final : public Killable {
 public:
  using Make = std::function<std::unique_ptr<Server>()>;

  /// `runs`: from its construction on; else it has to be started.
  Process(std::string_view name, bool runs, Make make)
      : Killable(name), make_(std::move(make)), server_(runs ? make_() : nullptr) {}

  bool running() const override { return server_ != nullptr; }
  void kill() override { server_.reset(); }
  void start() override { server_ = make_(); }

  /// Asks the daemon, which refuses when it does not run.
  Outcome ask(const std::function<Outcome(Server&)>& question) const {
    if (!running()) return {false, text() + " is not running"};
    return question(*server_);
  }

  /// What the daemon is doing.
  std::string state(const std::function<std::string(const Server&)>& describe) const {
    return running() ? describe(*server_) : "not running";
  }

 private:
  Make make_;
  std::unique_ptr<Server> server_;
};

}  // namespace tembra::sim

#endif
