// Every call that the library makes of the C library and of Depot fails once, wherever it is made, in every way it can
// fail; and every allocation. The calls are found by watching, not by reading the code.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <regex>
#include <thread>

#include "fault_outcomes.h"
#include "fault_scenarios.h"
#include "kinds_of_faults.h"
#include "kit/memory.h"
#include "library_imports.h"
#include "receiver/kernel_stage.h"

using kit::Call;
using kit::CountedCall;
using kit::Router;
namespace allocations = kit::library_allocations;

namespace {

// Depot's repair writes it, and leaves it when memory is short.
constexpr char kRepairsFile[] = "/tmp/ddb.dptmp";

std::set<std::string> temporaryFiles() {
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator("/tmp")) names.insert(entry.path().filename());
  return names;
}

std::string siteText(const void* site) {
  Dl_info info{};
  if (site == nullptr || dladdr(site, &info) == 0) return "nowhere";
  return std::string(info.dli_fname) + " " + (info.dli_sname == nullptr ? "(hidden)" : info.dli_sname);
}

/// One scenario, over and over, each time with another failure.
class SystemFaults : public testing::TestWithParam<Scenario> {
 protected:
  void SetUp() override {
    std::thread([] {}).join();  // a sanitizer may start a thread of its own with the first, and that one counts
    threads_ = runningThreads();
    router.registerCallback();
    prepare(router, GetParam());  // what is made once and kept is made now
    usual_ = finish(outcomeOf(router, GetParam()));
    addOneNode(router);
    descriptors_ = openDescriptors();
    files_ = temporaryFiles();
    outcomes_[""].insert(usual_);
  }

  std::vector<CountedCall> callsOfTheScenario() {
    prepare(router, GetParam());
    kit::faults().count();
    outcomeOf(router, GetParam());
    std::vector<CountedCall> calls = kit::faults().stop();
    router.close();
    return calls;
  }

  void failCall(const FaultKind& kind, int ordinal, int error) {
    prepare(router, GetParam());
    kit::faults().count();
    router.fail(kind.call, error, 1, ordinal);
    const std::string outcome = finish(outcomeOf(router, GetParam()));
    EXPECT_TRUE(kit::faults().strikes() == (GetParam().failing.has_value() ? 2 : 1) || !kind.isCertain);
    kit::faults().stop();
    take(kind.function, outcome);
  }

  std::size_t allocationsOfTheScenario() {
    prepare(router, GetParam());
    allocations::count();
    outcomeOf(router, GetParam());
    const std::size_t count = allocations::stop();
    router.close();
    return count;
  }

  void failAllocation(std::size_t number) {
    prepare(router, GetParam());
    allocations::count(number);
    std::string outcome = outcomeOf(router, GetParam());
    allocations::stop();
    SCOPED_TRACE(siteText(allocations::struckAt()));
    EXPECT_NE(allocations::struckAt(), nullptr);
    take("malloc", finish(std::move(outcome)));
  }

  /// What was found for these functions is what is expected, and what is expected was found.
  void expectOutcomes(bool ofAllocations) {
    FaultOutcomes expected = expectedOutcomes(GetParam().name);
    if (!kit::kReplacesOperatorNew) expected.erase("new");
    std::erase_if(expected,
                  [=](const auto& row) { return !row.first.empty() && (row.first == "malloc") != ofAllocations; });
    EXPECT_EQ(outcomes_, expected);
  }

  Router router;

 private:
  /// Closes, and adds to the outcome what is left behind.
  std::string finish(std::string outcome) {
    router.close();
    awaitThreads(threads_);
    if (!std::filesystem::exists(DBName)) outcome += " gone";
    if (std::filesystem::remove(kRepairsFile)) outcome += " leaves a file";
    const std::size_t descriptors = openDescriptors();
    if (descriptors_ != 0 && descriptors > descriptors_) outcome += " leaves a descriptor";
    if (descriptors_ != 0) descriptors_ = descriptors;
    const bool isWhole = GetParam().file != File::kHealthy || router.database().records() == kRecordsOfAHealthyFile;
    return isWhole ? outcome : outcome + " loses records";
  }

  /// The library works as if nothing had been.
  void take(const std::string& function, const std::string& outcome) {
    if (outcome != usual_) outcomes_[function].insert(outcome);
    EXPECT_EQ(addOneNode(router), "open 0 mesh 3 done 0 id 17 3 5 6 7");
    EXPECT_EQ(temporaryFiles(), files_);
  }

  std::string usual_;
  FaultOutcomes outcomes_;
  std::size_t descriptors_ = 0;
  std::size_t threads_ = 0;
  std::set<std::string> files_;
};

// "__fprintf_chk" is fprintf as a compiler that hardens calls it, "__fstat64_time64" is fstat with 64 bits on 32 bits.
std::string plainName(const std::string& import) {
  if (import == "_Znwm" || import == "_Znwj") return "new";
  static const std::regex form("(?:__)?([a-z]\\w*?)(?:_chk|64_chk|64_time64|_time64|64)");
  std::smatch parts;
  return std::regex_match(import, parts, form) ? parts[1].str() : import;
}

std::set<std::string> functionsThatFail() {
  std::set<std::string> names;
  for (const FaultKind& kind : faultKinds()) names.insert(kind.function);
  return names;
}

}  // namespace

TEST_P(SystemFaults, OfEachCall) {
  std::map<Call, int> made;
  for (const CountedCall& call : callsOfTheScenario()) {
    if (call.call == GetParam().failing) continue;
    const FaultKind& kind = kindOf(call.call);
    const int ordinal = made[call.call]++;
    for (const int error : kind.errors) {
      SCOPED_TRACE(std::string(kind.function) + " " + std::to_string(ordinal) + " error " + std::to_string(error));
      SCOPED_TRACE(siteText(call.site));
      failCall(kind, ordinal, error);
    }
  }
  expectOutcomes(false);
}

TEST_P(SystemFaults, OfEachAllocation) {
  const std::size_t count = allocationsOfTheScenario();
  for (std::size_t number = 1; number <= count; ++number) {
    SCOPED_TRACE(number);
    failAllocation(number);
  }
  expectOutcomes(true);
}

INSTANTIATE_TEST_SUITE_P(Each, SystemFaults, testing::ValuesIn(faultScenarios()),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(SystemFaultsAre, WhateverTheLibraryImports) {
  const auto failing = functionsThatFail();
  const auto imports = libraryImports();
  EXPECT_TRUE(imports.contains("dpopen")) << "the table of symbols was not read";
  for (const std::string& import : imports) {
    const std::string name = plainName(import);
    EXPECT_NE(failing.contains(name), infallibleImports().contains(name)) << name;
  }
}

TEST(SystemFaultsAre, AllMetInTheScenarios) {
  Router router;
  router.registerCallback();
  std::set<std::string> met;
  for (const Scenario& scenario : faultScenarios()) {
    prepare(router, scenario);
    kit::faults().count();
    outcomeOf(router, scenario);
    for (const CountedCall& call : kit::faults().stop()) met.insert(kindOf(call.call).function);
    router.close();
  }
  for (const FaultKind& kind : faultKinds()) {
    EXPECT_TRUE(met.contains(kind.function) || !kind.isCertain) << kind.function;
  }
}
