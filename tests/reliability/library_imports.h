// What the library takes from other libraries.
#ifndef TEMBRA_TESTS_RELIABILITY_LIBRARY_IMPORTS_H
#define TEMBRA_TESTS_RELIABILITY_LIBRARY_IMPORTS_H

#include <set>
#include <string>

/// The names that the shared object leaves undefined, as its symbol table has them; a sanitizer's own are left out.
std::set<std::string> libraryImports();

#endif
