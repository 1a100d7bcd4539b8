// Numbers in the words of people.
#ifndef TEMBRA_SIM_CORE_NUMBER_H
#define TEMBRA_SIM_CORE_NUMBER_H

#include <string_view>

namespace tembra::sim {

/// Throws std::invalid_argument with one sentence.
int parseNumber(std::string_view text, int smallest, int largest);

}  // namespace tembra::sim

#endif
