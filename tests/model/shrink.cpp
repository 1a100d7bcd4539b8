#include "shrink.h"

#include <algorithm>
#include <bit>

namespace oracle {
namespace {

constexpr std::size_t kFewEnoughForEveryPart = 8;

std::vector<Step> without(const std::vector<Step>& steps, std::size_t from, std::size_t count) {
  std::vector<Step> rest(steps.begin(), steps.begin() + static_cast<std::ptrdiff_t>(from));
  rest.insert(rest.end(), steps.begin() + static_cast<std::ptrdiff_t>(std::min(steps.size(), from + count)),
              steps.end());
  return rest;
}

// Leaves out one piece after the other; true when any could be left out.
bool leaveOutPieces(std::vector<Step>& steps, std::size_t size, const Shows& shows) {
  bool shorter = false;
  for (std::size_t from = 0; from < steps.size();) {
    std::vector<Step> rest = without(steps, from, size);
    const std::size_t needed = shows(rest);
    if (needed == 0) {
      from += size;
      continue;
    }
    rest.resize(needed);
    steps = std::move(rest);
    shorter = true;
  }
  return shorter;
}

std::vector<Step> partOf(const std::vector<Step>& steps, unsigned chosen) {
  std::vector<Step> part;
  for (std::size_t i = 0; i < steps.size(); ++i) {
    if ((chosen >> i & 1U) != 0) part.push_back(steps[i]);
  }
  return part;
}

std::vector<Step> leastPart(const std::vector<Step>& steps, const Shows& shows) {
  for (int size = 1; size < static_cast<int>(steps.size()); ++size) {
    for (unsigned chosen = 1; chosen < 1U << steps.size(); ++chosen) {
      if (std::popcount(chosen) != size) continue;
      std::vector<Step> part = partOf(steps, chosen);
      if (shows(part) != 0) return part;
    }
  }
  return steps;
}

}  // namespace

std::vector<Step> shrink(std::vector<Step> steps, const Shows& shows) {
  const std::size_t needed = shows(steps);
  if (needed == 0) return steps;
  steps.resize(needed);
  for (std::size_t size = std::max<std::size_t>(steps.size() / 2, 1); size > 0;) {
    const bool shorter = leaveOutPieces(steps, size, shows);
    if (!shorter || size > 1) size /= 2;
  }
  return steps.size() <= kFewEnoughForEveryPart ? leastPart(steps, shows) : steps;
}

}  // namespace oracle
