#include "failure.h"

#include <iostream>

namespace tembra::cli {

void complain(const std::string& sentence) { std::cerr << "tembra-assoc: " << sentence << std::endl; }

}  // namespace tembra::cli
