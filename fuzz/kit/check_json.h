// Whether what the kit writes fits its published schemas. Compiled without sanitizers: the check is not under test.
#ifndef TEMBRA_FUZZ_KIT_CHECK_JSON_H
#define TEMBRA_FUZZ_KIT_CHECK_JSON_H

#include <string>

namespace fuzz {

void checkEventJson(const std::string& text);
void checkStateJson(const std::string& text);

}  // namespace fuzz

#endif
