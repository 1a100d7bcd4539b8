#include "failure.h"

#include <iostream>

#include "platform/printable.h"

namespace tembra::cli {

void complain(const std::string& sentence) { std::cerr << "tembra-assoc: " << printable(sentence) << std::endl; }

}  // namespace tembra::cli
