// The least part of a run that still shows what the whole shows.
#ifndef TEMBRA_TESTS_MODEL_SHRINK_H
#define TEMBRA_TESTS_MODEL_SHRINK_H

#include <cstddef>
#include <functional>
#include <vector>

#include "step.h"

namespace oracle {

/// How many of the steps it takes to show it; 0: they do not.
using Shows = std::function<std::size_t(const std::vector<Step>&)>;

/// Leaves out what can be left out, in ever smaller pieces; of what is then left, tries every part if that is little.
std::vector<Step> shrink(std::vector<Step> steps, const Shows& shows);

}  // namespace oracle

#endif
