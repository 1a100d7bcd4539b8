// How two accounts of a step are told apart: the library's, and the oracle's.
#ifndef TEMBRA_TESTS_MODEL_DIFFERENCE_H
#define TEMBRA_TESTS_MODEL_DIFFERENCE_H

#include <optional>
#include <string>
#include <vector>

#include "oracle/effect.h"

namespace oracle {

/// The first difference, in words. The library's lines come from a trace, where control characters are made visible.
std::optional<std::string> difference(const std::vector<Effect>& library, const std::vector<Effect>& model);
std::optional<std::string> difference(const std::vector<Field>& library, const std::vector<Field>& model);

}  // namespace oracle

#endif
